#include "VisitRecorder.h"

#include "VisitHistory.h"
#include "VisitLine.h"

#include <QDateTime>

namespace {
/// Milliseconds.
constexpr int leastPause = 1000;
constexpr qint64 sameVisit = 30'000;
}

VisitRecorder::VisitRecorder(QObject *parent, const Clock &clock)
    : QObject(parent)
    , m_clock(clock ? clock : [] { return QDateTime::currentMSecsSinceEpoch(); })
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(leastPause);
    connect(&m_pause, &QTimer::timeout, this, &VisitRecorder::tell);
}

VisitRecorder::~VisitRecorder()
{
    tell();
}

void VisitRecorder::pageCame(const QString &address)
{
    m_title.clear();
    m_address = address;
    if (std::exchange(m_returning, {}) != address)
        came({m_clock() / 1000, address, {}});
}

void VisitRecorder::addressChanged(const QString &address)
{
    if (address == m_address)
        return;
    m_address = address;
    came({m_clock() / 1000, address, m_title});
}

void VisitRecorder::titleChanged(const QString &title)
{
    m_title = VisitLine::keptTitle(title);
    if (m_waiting)
        m_waiting->title = m_title;
    else if (VisitHistory *history = VisitHistory::current(); history && m_last == m_address)
        history->setTitle(m_address, m_title);
}

void VisitRecorder::came(const Visit &visit)
{
    m_waiting = visit;
    if (!m_pause.isActive())
        tell();
    else if (VisitHistory *history = VisitHistory::current())
        connect(history, &VisitHistory::erasing, this, &VisitRecorder::drop, Qt::UniqueConnection);
}

void VisitRecorder::drop(const VisitErasure &erasure)
{
    if (!m_waiting)
        return;
    const QByteArray address = VisitLine::keptAddress(m_waiting->address).toUtf8();
    if (erasure.covers({m_waiting->time, address, {}}))
        m_waiting.reset();
}

void VisitRecorder::tell()
{
    if (!m_waiting)
        return;
    const Visit visit = *std::exchange(m_waiting, std::nullopt);
    const qint64 now = m_clock();
    const bool isSame =
        visit.address == m_last && now - m_lastTime < sameVisit && now >= m_lastTime;
    if (isSame)
        return;
    m_last = visit.address;
    m_lastTime = now;
    m_pause.start();
    if (VisitHistory *history = VisitHistory::current())
        history->note(visit);
}
