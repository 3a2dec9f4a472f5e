#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QToolButton;

/// A slim strip at the bottom of the frame while the pages of a profile load: how many of how many
/// are there, and a button that ends it.
class ProfileProgress : public QStatusBar {
    Q_OBJECT

public:
    explicit ProfileProgress(QWidget *parent);

    /// Shown while `loaded` is less than `total`.
    void show(int loaded, int total);

signals:
    void stopped();

private:
    QLabel *m_text;
    QProgressBar *m_bar;
    QToolButton *m_stop;
};
