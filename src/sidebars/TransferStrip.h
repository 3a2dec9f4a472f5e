#pragma once

#include <QToolBar>

class QAction;
class QLabel;
class QProgressBar;

/// A slim strip at the bottom of the frame: what an import or export of favorites is doing, with
/// a button that stops it; then what came of it, until it is closed.
class TransferStrip : public QToolBar {
    Q_OBJECT

public:
    explicit TransferStrip(QWidget *parent);

    void begin(const QString &text);
    /// 0 where it is not known.
    void setProgress(int percent);
    void end(const QString &text, bool hasList);

signals:
    void stopped();
    /// The list of what was left out is asked for.
    void listWanted();

private:
    void setRunning(bool running);

    QLabel *m_text;
    QProgressBar *m_bar;
    QAction *m_barItem;
    QAction *m_stop;
    QAction *m_list;
    QAction *m_close;
};
