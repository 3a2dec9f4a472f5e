#include "DownloadRate.h"

#include <cmath>

namespace {
/// Milliseconds in which the weight of what was before falls to a third.
constexpr double memory = 3000;
/// What comes in less than that says nothing about the rate.
constexpr qint64 shortest = 100;
}

void DownloadRate::note(qint64 received, qint64 now)
{
    if (m_at < 0 || received < m_received) {
        restart();
        m_received = received;
        m_at = now;
        return;
    }
    const qint64 passed = now - m_at;
    if (passed < shortest)
        return;
    const double rate = double(received - m_received) * 1000 / double(passed);
    const double weight = m_rate == 0 ? 1 : 1 - std::exp(-double(passed) / memory);
    m_rate += (rate - m_rate) * weight;
    m_received = received;
    m_at = now;
}

qint64 DownloadRate::perSecond() const
{
    return std::llround(m_rate);
}

qint64 DownloadRate::secondsLeft(qint64 size) const
{
    if (size < m_received || m_rate < 1)
        return -1;
    return std::llround(std::ceil(double(size - m_received) / m_rate));
}

void DownloadRate::restart()
{
    *this = {};
}
