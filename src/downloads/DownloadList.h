#pragma once

#include "Download.h"
#include "DownloadRate.h"

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <functional>

class Transfer;

/// All downloads that the program knows of, the latest first, and what brings those under way. It
/// is the one place where their state is; windows, strips and files follow its signals.
class DownloadList : public QObject {
    Q_OBJECT

public:
    /// Of the downloads under way.
    struct Sum {
        int count = 0;
        /// Bytes, of those whose size is known.
        qint64 received = 0;
        qint64 size = 0;
        /// One or more did not say how large they are.
        bool hasUnknown = false;
        /// Bytes in a second.
        qint64 rate = 0;
        /// -1: unknown.
        qint64 secondsLeft = -1;
    };
    /// Begins the download of an entry anew or goes on with it.
    using Retry = std::function<void(const QString &id)>;
    /// Keeps an entry as it is now over the end of the program, and calls back then.
    using Record = std::function<void(const QString &id, const std::function<void()> &then)>;

    /// How many are kept: the oldest that are over go first.
    static constexpr int most = 1000;

    explicit DownloadList(QObject *parent = nullptr);
    ~DownloadList() override;

    const QList<Download> &all() const { return m_all; }
    /// Null for an id that is not in the list. Good until the list changes.
    const Download *find(const QString &id) const;
    /// A free id for a new entry.
    static QString newId();

    /// Puts a new entry in front; `transfer` may be null for one that is over.
    void add(const Download &download, Transfer *transfer);
    /// Puts entries that are over behind all others, in their order.
    void restore(const QList<Download> &earlier);
    /// The entry is brought by another from now on.
    void setTransfer(const QString &id, Transfer *transfer);
    /// Changes the entry of that id, if there is one; the id stays.
    void change(const QString &id, const std::function<void(Download &)> &change);
    /// Takes entries out; those under way are cancelled. Files that are whole stay.
    void remove(const QStringList &ids);

    /// What the user asks; nothing where the entry's state has no use for it.
    void pause(const QString &id);
    void resume(const QString &id);
    void cancel(const QString &id);
    void retry(const QString &id);
    void setRetry(const Retry &retry) { m_retry = retry; }
    /// For a step that must not be done unknown to the list's file, however the program ends:
    /// `then` does it, also where the file cannot be written, and at once where there is none.
    void record(const QString &id, const std::function<void()> &then);
    void setRecord(const Record &record) { m_record = record; }
    /// The program ends: what is under way becomes `Unfinished`, or `Cancelled` where nothing of it
    /// can be continued.
    void leaveAll();

    Sum sum() const;
    /// Bytes in a second; 0 for one that is not running.
    qint64 rate(const QString &id) const;
    qint64 secondsLeft(const QString &id) const;

signals:
    void added(const QString &id);
    /// Not for each change: bytes that come in are told a few times in a second, states with the
    /// next turn of the event loop.
    void changed(const QSet<QString> &ids);
    void removed(const QString &id);
    /// Entries of earlier runs came in behind the others, maybe many.
    void restored();
    /// All have been told to leave: what is to be kept of them must be when this returns.
    void left();

private:
    struct Running {
        QPointer<Transfer> transfer;
        DownloadRate rate;
    };

    qsizetype indexOf(const QString &id) const;
    Transfer *transferOf(const QString &id) const;
    void tell();
    void trim();

    QList<Download> m_all;
    /// By which an entry's place is found: descending, one for each, an entry's own all its life.
    QList<qint64> m_numbers;
    QHash<QString, qint64> m_numberOf;
    QHash<QString, Running> m_running;
    QSet<QString> m_changed;
    QTimer m_tells;
    QElapsedTimer m_clock;
    Retry m_retry;
    Record m_record;
};

/// The program's one list; it goes with the application object, which must be there.
DownloadList &downloadList();
