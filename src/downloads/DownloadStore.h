#pragma once

#include "Download.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <memory>

class DownloadList;

/// Keeps a list of downloads in a file: reads it once, behind what the list has by then, and writes
/// each change of state soon after it. Both are done beside the interface; what cannot be written
/// is logged and tried again with the next change, else after a pause that grows up to a minute.
/// Stages of entries that leave the list go.
class DownloadStore : public QObject {
    Q_OBJECT

public:
    DownloadStore(DownloadList &list, const QString &file, QObject *parent = nullptr);
    /// With the list's last state in the file.
    ~DownloadStore() override;

    /// Returns when the file has what the list has now.
    void flush();

signals:
    /// What the file had is in the list.
    void loaded();

private:
    /// On its way to the file.
    struct Write {
        QStringList entries;
        QSet<QString> removed;
        /// The worker's; read when it is done.
        bool isWritten = false;
    };

    void load();
    void take(const QList<Download> &found, const QList<Download> &stored);
    void note(const QString &id);
    void noteAll();
    void drop(const QString &id);
    void record(const QString &id, const std::function<void()> &then);
    void wake();
    void start();
    void end(const Write *write);
    void takeBack(const Write &write);
    bool hasMore() const { return !m_waiting.isEmpty() || !m_removed.isEmpty(); }
    static void call(const QList<std::function<void()>> &all);

    DownloadList &m_list;
    QString m_file;
    /// One after the other.
    QThreadPool m_worker;
    QTimer m_soon;
    /// After what could not be written; its interval is the pause.
    QTimer m_again;
    /// As they are in the file or on their way there.
    QHash<QString, Download> m_known;
    /// What is to be written, in the order of its changes.
    QStringList m_waiting;
    QSet<QString> m_removed;
    /// Of entries that left the list.
    QStringList m_stages;
    /// What comes after the next write.
    QList<std::function<void()>> m_then;
    /// None: nothing is being written.
    std::shared_ptr<Write> m_write;
};
