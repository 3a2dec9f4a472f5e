#include "TitleThrottle.h"

namespace {
constexpr int pauseInMilliseconds = 50;
}

TitleThrottle::TitleThrottle(QObject *parent)
    : QObject(parent)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseInMilliseconds);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        if (m_waiting)
            passOn();
    });
}

void TitleThrottle::put(const QString &title)
{
    m_latest = title;
    m_waiting = true;
    if (!m_pause.isActive())
        passOn();
}

void TitleThrottle::passOn()
{
    m_waiting = false;
    m_pause.start();
    emit changed(m_latest);
}
