#pragma once

#include "VisitErasure.h"
#include "VisitIndex.h"
#include "WriteResult.h"

#include <QDateTime>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>

/// The pages visited, as a file and in memory. The file is read, added to and replaced beside the
/// interface, one after the other; it is read first when somebody wants to know what is in it. What
/// cannot be written is tried again, and logged once until it can.
class VisitHistory : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const WriteResult &result)>;

    explicit VisitHistory(const QString &file, QObject *parent = nullptr);
    /// With all visits in the file, where they can be.
    ~VisitHistory() override;

    QString file() const { return m_file; }
    /// The one of the program; null in one that keeps none.
    static VisitHistory *current();

    /// Keeps a visit, if it is of a page that is kept at all.
    void note(const Visit &visit);
    /// The title of a page that was visited before. In the file only where it comes soon.
    void setTitle(const QString &address, const QString &title);

    /// Reads the file, if it is not known yet or another program has changed it since; `changed`
    /// comes when that is done.
    void refresh();
    /// The file was read.
    bool isLoaded() const { return m_isLoaded; }
    /// Empty until the file was read.
    const VisitIndex &index() const { return *m_index; }
    /// For who keeps numbers of its pages: reading the file anew makes another one.
    std::shared_ptr<const VisitIndex> sharedIndex() const { return m_index; }

    /// Deletes visits from the file and then from memory. `done` is called later; nothing is
    /// deleted where it tells of a failure.
    void erase(const VisitErasure &erasure, const Done &done);

    /// Returns when all that was noted and wanted is done.
    void flush();

signals:
    /// The visits are others, or their titles.
    void changed();
    /// Those are about to be deleted, also where they have not been told yet.
    void erasing(const VisitErasure &erasure);

private:
    /// As it was when this program was last at it; used by the worker alone.
    struct Stamp {
        qint64 size = -1;
        QDateTime modified;
        bool operator==(const Stamp &) const = default;
    };

    Stamp stampNow() const;
    void write();
    void written(const QList<Visit> &batch, const WriteResult &result);
    void read(bool isForced);
    void take(const std::shared_ptr<VisitIndex> &index);
    void later(const std::function<void()> &inTheInterface);
    void addToIndex(const Visit &visit);

    QString m_file;
    /// One after the other.
    QThreadPool m_worker;
    std::atomic<bool> m_isEnding = false;
    Stamp m_stamp;
    QTimer m_soon;
    /// Not in the file yet, nor on their way there.
    QList<Visit> m_waiting;
    std::shared_ptr<VisitIndex> m_index;
    /// Each call that the worker has yet to answer.
    int m_underWay = 0;
    bool m_isLoaded = false;
    /// Reads that are under way.
    int m_reads = 0;
    bool m_isWriting = false;
    bool m_hasFailed = false;
};
