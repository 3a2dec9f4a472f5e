#include "DownloadStore.h"

#include "DownloadFile.h"
#include "DownloadList.h"
#include "DownloadStage.h"
#include "LeftDownload.h"
#include "Log.h"

#include <algorithm>

namespace {
/// Milliseconds from the end of one write to the next.
constexpr int leastPause = 100;
/// Milliseconds to the next try of what could not be written: twice as many each time.
constexpr int firstRetry = 1000;
constexpr int longestRetry = 60000;

/// Without what changes all the time.
Download settled(Download download)
{
    if (download.isUnderWay())
        download.received = 0;
    return download;
}

void removeStages(const QStringList &stages)
{
    // One that is still somebody's is not given.
    for (const QString &stage : stages)
        DownloadStage::take(stage);
}
}

DownloadStore::DownloadStore(DownloadList &list, const QString &file, QObject *parent)
    : QObject(parent)
    , m_list(list)
    , m_file(file)
{
    m_worker.setMaxThreadCount(1);
    m_soon.setSingleShot(true);
    m_again.setSingleShot(true);
    m_again.setInterval(firstRetry);
    connect(&m_soon, &QTimer::timeout, this, &DownloadStore::start);
    connect(&m_again, &QTimer::timeout, this, &DownloadStore::wake);
    connect(&list, &DownloadList::added, this, &DownloadStore::note);
    connect(&list, &DownloadList::changed, this, [this](const QSet<QString> &ids) {
        for (const QString &id : ids)
            note(id);
    });
    connect(&list, &DownloadList::removed, this, &DownloadStore::drop);
    list.setRecord(
        [this](const QString &id, const std::function<void()> &then) { record(id, then); });
    // What ends the program may not wait for more than this.
    connect(&list, &DownloadList::left, this, &DownloadStore::flush);
    load();
}

DownloadStore::~DownloadStore()
{
    m_list.setRecord({});
    flush();
    if (hasMore())
        qCWarning(lcFiles) << "gives up writing the last of the downloads to" << m_file;
}

void DownloadStore::flush()
{
    m_worker.waitForDone();
    end(m_write.get());
    noteAll();
    start();
    m_worker.waitForDone();
    end(m_write.get());
}

void DownloadStore::load()
{
    m_worker.start([this] {
        const std::optional<QList<Download>> stored = DownloadFile::read(m_file);
        if (!stored)
            qCWarning(lcFiles) << "cannot read" << m_file << "and so shows no earlier downloads";
        const QList<Download> all = stored.value_or(QList<Download>());
        QList<Download> found;
        for (const Download &download : all) {
            if (const std::optional<Download> left = LeftDownload::asLeft(download))
                found.append(*left);
        }
        QMetaObject::invokeMethod(
            this, [this, found, all] { take(found, all); }, Qt::QueuedConnection);
    });
}

void DownloadStore::take(const QList<Download> &found, const QList<Download> &stored)
{
    // Its own ones may be in the file already.
    QList<Download> others;
    std::copy_if(found.cbegin(), found.cend(), std::back_inserter(others),
                 [this](const Download &each) { return !m_known.contains(each.id); });
    for (const Download &each : stored) {
        if (!m_known.contains(each.id))
            m_known.insert(each.id, settled(each));
    }
    m_list.restore(others);
    for (const Download &each : std::as_const(others))
        note(each.id);
    emit loaded();
}

void DownloadStore::note(const QString &id)
{
    const Download *now = m_list.find(id);
    if (!now || now->isPrivate())
        return;
    const Download known = settled(*now);
    Download &before = m_known[id];
    if (before == known)
        return;
    before = known;
    m_removed.remove(id);
    if (!m_waiting.contains(id))
        m_waiting.append(id);
    wake();
}

/// What the list has not told yet, too. The oldest first, as in the file.
void DownloadStore::noteAll()
{
    const QList<Download> &all = m_list.all();
    for (qsizetype at = all.size() - 1; at >= 0; --at)
        note(all.at(at).id);
}

void DownloadStore::drop(const QString &id)
{
    if (!m_known.contains(id))
        return;
    const Download known = m_known.take(id);
    if (!known.stage.isEmpty())
        m_stages.append(known.stage);
    m_waiting.removeAll(id);
    m_removed.insert(id);
    wake();
}

void DownloadStore::record(const QString &id, const std::function<void()> &then)
{
    note(id);
    m_then.append(then);
    wake();
}

void DownloadStore::call(const QList<std::function<void()>> &all)
{
    for (const std::function<void()> &each : all)
        each();
}

/// At once where nothing was written just now: what is not in the file is lost with the program.
void DownloadStore::wake()
{
    if (!m_write && !m_soon.isActive())
        m_soon.start(0);
}

void DownloadStore::start()
{
    DownloadFile::Changes changes;
    changes.removed = std::exchange(m_removed, {});
    const QStringList ids = std::exchange(m_waiting, {});
    for (const QString &id : ids) {
        if (const Download *download = m_list.find(id))
            changes.entries.append(*download);
    }
    const QStringList stages = std::exchange(m_stages, {});
    const QList<std::function<void()>> then = std::exchange(m_then, {});
    if (changes.entries.isEmpty() && changes.removed.isEmpty()) {
        call(then);
        return;
    }
    m_again.stop();
    m_write = std::make_shared<Write>(Write{ids, changes.removed});
    m_worker.start([this, changes, stages, then, write = m_write] {
        QStringList trimmed;
        write->isWritten = bool(DownloadFile::write(m_file, changes, trimmed));
        removeStages(stages + trimmed);
        QMetaObject::invokeMethod(
            this,
            [this, write, then] {
                end(write.get());
                call(then);
            },
            Qt::QueuedConnection);
    });
}

/// Nothing is left to do where that write has been ended by what waited for it.
void DownloadStore::end(const Write *write)
{
    if (!write || write != m_write.get())
        return;
    const std::shared_ptr<Write> done = std::exchange(m_write, nullptr);
    // What came meanwhile; the rest waits: the disk may be as full for long.
    if (hasMore() || !m_then.isEmpty())
        m_soon.start(leastPause);
    if (done->isWritten)
        m_again.setInterval(firstRetry);
    else
        takeBack(*done);
}

void DownloadStore::takeBack(const Write &write)
{
    for (const QString &id : write.entries) {
        if (!m_waiting.contains(id) && m_list.find(id))
            m_waiting.append(id);
    }
    m_removed.unite(write.removed);
    m_again.start();
    m_again.setInterval(qMin(2 * m_again.interval(), longestRetry));
}
