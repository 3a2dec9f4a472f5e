#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>

class DesktopNotice;
class DownloadList;
class TaskBarProgress;

/// Tells the desktop of downloads: how far they are on the task bar, and once, when all that was
/// under way is over while the user is elsewhere, what came of it.
class DownloadNews : public QObject {
    Q_OBJECT

public:
    explicit DownloadNews(DownloadList &list, QObject *parent = nullptr);

signals:
    /// The user wants to see the list.
    void listWanted();

private:
    void look();
    void showProgress();
    void showEnd();

    DownloadList &m_list;
    DesktopNotice *m_notice;
    TaskBarProgress *m_progress;
    /// Ids since nothing was under way.
    QSet<QString> m_begun;
    /// Many may be removed at once.
    QTimer m_looks;
};
