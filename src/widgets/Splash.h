#pragma once

#include <QFrame>

class QTimer;

/// The splash: says what the program is while the frame goes on loading. It closes after three
/// seconds, at a click, or at any key while it has the focus, and is deleted then.
class Splash : public QFrame {
    Q_OBJECT

public:
    /// `owner` is the frame; the splash stays above it and goes with it.
    explicit Splash(QWidget *owner);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    /// Tab is a key like any other here.
    bool focusNextPrevChild(bool next) override;

private:
    void layOut();
    void centreOn(const QWidget *owner);

    QTimer *m_tmrExit;
};

/// Loads the splash and shows it, modeless, above `frame`; lets it paint before it returns.
Splash *showSplash(QWidget *frame);
