#include "DownloadList.h"

#include "Transfer.h"

#include <QCoreApplication>
#include <QUuid>
#include <algorithm>
#include <functional>

namespace {
/// Milliseconds between two tellings of bytes.
constexpr int pace = 200;
}

DownloadList::DownloadList(QObject *parent)
    : QObject(parent)
{
    m_clock.start();
    m_tells.setSingleShot(true);
    connect(&m_tells, &QTimer::timeout, this, &DownloadList::tell);
}

DownloadList::~DownloadList() = default;

const Download *DownloadList::find(const QString &id) const
{
    const qsizetype index = indexOf(id);
    return index < 0 ? nullptr : &m_all.at(index);
}

QString DownloadList::newId()
{
    return QUuid::createUuid().toString(QUuid::Id128);
}

void DownloadList::add(const Download &download, Transfer *transfer)
{
    m_all.prepend(download);
    m_numbers.prepend(m_numbers.isEmpty() ? 0 : m_numbers.first() + 1);
    m_numberOf.insert(download.id, m_numbers.first());
    if (transfer)
        setTransfer(download.id, transfer);
    emit added(download.id);
    trim();
}

void DownloadList::restore(const QList<Download> &earlier)
{
    for (const Download &download : earlier) {
        if (m_all.size() >= most)
            break;
        if (m_numberOf.contains(download.id))
            continue;
        m_all.append(download);
        m_numbers.append(m_numbers.isEmpty() ? 0 : m_numbers.last() - 1);
        m_numberOf.insert(download.id, m_numbers.last());
    }
    emit restored();
}

void DownloadList::setTransfer(const QString &id, Transfer *transfer)
{
    m_running.insert(id, {transfer, {}});
}

void DownloadList::change(const QString &id, const std::function<void(Download &)> &change)
{
    const qsizetype index = indexOf(id);
    if (index < 0)
        return;
    const Download before = m_all.at(index);
    Download now = before;
    change(now);
    now.id = id;
    if (now == before)
        return;
    m_all[index] = now;
    const auto running = m_running.find(id);
    if (running != m_running.end()) {
        if (now.state != before.state)
            running->rate.restart();
        if (now.state == Download::State::Running)
            running->rate.note(now.received, m_clock.elapsed());
    }
    if (now.isOver())
        m_running.remove(id);
    m_changed.insert(id);
    if (now.state != before.state)
        m_tells.start(0);
    else if (!m_tells.isActive())
        m_tells.start(pace);
}

void DownloadList::remove(const QStringList &ids)
{
    for (const QString &id : ids) {
        cancel(id);
        const qsizetype index = indexOf(id);
        if (index < 0)
            continue;
        m_all.removeAt(index);
        m_numbers.removeAt(index);
        m_numberOf.remove(id);
        m_running.remove(id);
        m_changed.remove(id);
        emit removed(id);
    }
}

void DownloadList::pause(const QString &id)
{
    if (Transfer *transfer = transferOf(id))
        transfer->pause();
}

void DownloadList::resume(const QString &id)
{
    if (Transfer *transfer = transferOf(id))
        transfer->resume();
}

void DownloadList::cancel(const QString &id)
{
    if (Transfer *transfer = transferOf(id))
        transfer->cancel();
}

void DownloadList::retry(const QString &id)
{
    const Download *download = find(id);
    if (m_retry && download && download->isOver() && download->state != Download::State::Done)
        m_retry(id);
}

void DownloadList::record(const QString &id, const std::function<void()> &then)
{
    if (m_record)
        m_record(id, then);
    else
        then();
}

void DownloadList::leaveAll()
{
    const QStringList ids = m_running.keys();
    for (const QString &id : ids) {
        if (Transfer *transfer = transferOf(id))
            transfer->leave();
    }
    emit left();
}

DownloadList::Sum DownloadList::sum() const
{
    Sum sum;
    for (const Download &download : m_all) {
        if (!download.isUnderWay())
            continue;
        ++sum.count;
        sum.rate += rate(download.id);
        if (download.size < 0) {
            sum.hasUnknown = true;
            continue;
        }
        sum.size += download.size;
        sum.received += std::min(download.received, download.size);
    }
    if (sum.rate > 0 && !sum.hasUnknown)
        sum.secondsLeft = (sum.size - sum.received + sum.rate - 1) / sum.rate;
    return sum;
}

qint64 DownloadList::rate(const QString &id) const
{
    const auto running = m_running.find(id);
    return running == m_running.end() ? 0 : running->rate.perSecond();
}

qint64 DownloadList::secondsLeft(const QString &id) const
{
    const auto running = m_running.find(id);
    const Download *download = find(id);
    if (running == m_running.end() || !download || download->size < 0)
        return -1;
    return running->rate.secondsLeft(download->size);
}

qsizetype DownloadList::indexOf(const QString &id) const
{
    const auto number = m_numberOf.constFind(id);
    if (number == m_numberOf.cend())
        return -1;
    const auto place =
        std::lower_bound(m_numbers.cbegin(), m_numbers.cend(), *number, std::greater<>());
    return place - m_numbers.cbegin();
}

Transfer *DownloadList::transferOf(const QString &id) const
{
    return m_running.value(id).transfer;
}

void DownloadList::tell()
{
    const QSet<QString> ids = std::exchange(m_changed, {});
    if (!ids.isEmpty())
        emit changed(ids);
}

/// One that is under way is never dropped, however many there are.
void DownloadList::trim()
{
    for (qsizetype i = m_all.size() - 1; i >= 0 && m_all.size() > most; --i) {
        if (m_all.at(i).isOver())
            remove({m_all.at(i).id});
    }
}

DownloadList &downloadList()
{
    // A static one would outlive the event loop that its timers are of.
    static QPointer<DownloadList> list;
    if (!list)
        list = new DownloadList(QCoreApplication::instance());
    return *list;
}
