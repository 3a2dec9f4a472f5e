#include "VisitHistory.h"

#include "Log.h"
#include "VisitFile.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {
/// Milliseconds: visits that come together are one write, and a title comes a little after its
/// page.
constexpr int batchPause = 1500;
/// To the next try of what could not be written.
constexpr int retryPause = 60'000;
/// That many wait where nothing can be written; the oldest are given up.
constexpr qsizetype mostWaiting = 1000;

VisitHistory *theHistory = nullptr;

qint64 now()
{
    return QDateTime::currentSecsSinceEpoch();
}

struct Bytes {
    QByteArray address;
    QByteArray title;
};

VisitLine::Parts partsOf(const Visit &visit, Bytes &bytes)
{
    bytes = {visit.address.toUtf8(), visit.title.toUtf8()};
    return {visit.time, bytes.address, bytes.title};
}
}

VisitHistory::VisitHistory(const QString &file, QObject *parent)
    : QObject(parent)
    , m_file(file)
    , m_index(std::make_shared<VisitIndex>(now()))
{
    m_index->rank();
    m_worker.setMaxThreadCount(1);
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &VisitHistory::write);
    theHistory = this;
}

VisitHistory::~VisitHistory()
{
    if (theHistory == this)
        theHistory = nullptr;
    m_isEnding = true;
    m_worker.waitForDone();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    if (!m_waiting.isEmpty() && !VisitFile::append(m_file, m_waiting))
        qCWarning(lcFiles) << "gives up writing the last visits to" << m_file;
}

VisitHistory *VisitHistory::current()
{
    return theHistory;
}

void VisitHistory::note(const Visit &visit)
{
    const Visit kept{visit.time, VisitLine::keptAddress(visit.address),
                     VisitLine::keptTitle(visit.title)};
    if (kept.address.isEmpty())
        return;
    m_waiting.append(kept);
    if (m_waiting.size() > mostWaiting)
        m_waiting.removeFirst();
    if (!m_soon.isActive())
        m_soon.start(m_hasFailed ? retryPause : batchPause);
    if (!m_isLoaded)
        return;
    addToIndex(kept);
    emit changed();
}

void VisitHistory::addToIndex(const Visit &visit)
{
    Bytes bytes;
    m_index->add(partsOf(visit, bytes));
}

void VisitHistory::setTitle(const QString &address, const QString &title)
{
    const QString keptAddress = VisitLine::keptAddress(address);
    const QString kept = VisitLine::keptTitle(title);
    if (keptAddress.isEmpty() || kept.isEmpty())
        return;
    for (Visit &visit : m_waiting) {
        if (visit.address == keptAddress)
            visit.title = kept;
    }
    if (!m_isLoaded)
        return;
    m_index->setTitle(keptAddress.toUtf8(), kept.toUtf8());
    emit changed();
}

VisitHistory::Stamp VisitHistory::stampNow() const
{
    const QFileInfo info(m_file);
    return info.exists() ? Stamp{info.size(), info.lastModified()} : Stamp{};
}

/// From the worker.
void VisitHistory::later(const std::function<void()> &inTheInterface)
{
    QMetaObject::invokeMethod(
        this,
        [this, inTheInterface] {
            --m_underWay;
            inTheInterface();
        },
        Qt::QueuedConnection);
}

/// Not while the file is being read: what is not in it when that begins is still here when it ends.
void VisitHistory::write()
{
    if (m_reads > 0 || m_isWriting || m_waiting.isEmpty())
        return;
    m_soon.stop();
    m_isWriting = true;
    ++m_underWay;
    m_worker.start([this, batch = std::exchange(m_waiting, {})] {
        const bool isOurs = stampNow() == m_stamp;
        const WriteResult result = VisitFile::append(m_file, batch);
        if (isOurs)
            m_stamp = stampNow();
        later([this, batch, result] { written(batch, result); });
    });
}

void VisitHistory::written(const QList<Visit> &batch, const WriteResult &result)
{
    m_isWriting = false;
    if (!result) {
        m_waiting = batch + m_waiting;
        m_waiting.remove(0, std::max<qsizetype>(0, m_waiting.size() - mostWaiting));
        if (!m_hasFailed)
            qCWarning(lcFiles) << "cannot write the visits to" << m_file << result.detail();
    }
    m_hasFailed = !result;
    if (!m_waiting.isEmpty() && !m_soon.isActive())
        m_soon.start(m_hasFailed ? retryPause : batchPause);
}

void VisitHistory::refresh()
{
    if (m_reads == 0)
        read(false);
}

void VisitHistory::read(bool isForced)
{
    write();
    ++m_reads;
    ++m_underWay;
    const bool isKnown = m_isLoaded && !isForced;
    m_worker.start([this, isKnown] {
        const Stamp stamp = stampNow();
        std::shared_ptr<VisitIndex> index;
        if (!isKnown || stamp != m_stamp) {
            index = std::make_shared<VisitIndex>(VisitFile::read(m_file, now(), m_isEnding));
            m_stamp = stamp;
        }
        later([this, index] { take(index); });
    });
}

void VisitHistory::take(const std::shared_ptr<VisitIndex> &index)
{
    --m_reads;
    if (!m_waiting.isEmpty() && !m_soon.isActive())
        m_soon.start(batchPause);
    if (!index)
        return;
    m_index = index;
    m_isLoaded = true;
    for (const Visit &visit : std::as_const(m_waiting))
        addToIndex(visit);
    emit changed();
}

void VisitHistory::erase(const VisitErasure &erasure, const Done &done)
{
    emit erasing(erasure);
    write();
    ++m_underWay;
    m_worker.start([this, erasure, done] {
        const WriteResult result = VisitFile::erase(m_file, erasure);
        later([this, erasure, done, result] {
            if (result) {
                m_waiting.removeIf([&erasure](const Visit &visit) {
                    Bytes bytes;
                    return erasure.covers(partsOf(visit, bytes));
                });
                read(true);
            }
            done(result);
        });
    });
}

void VisitHistory::flush()
{
    do {
        write();
        m_worker.waitForDone();
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    } while (m_underWay > 0 || (!m_waiting.isEmpty() && !m_hasFailed));
}
