#include "TaskBarProgress.h"

#include "DesktopBus.h"
#include "ProgramInfo.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Milliseconds between two tellings.
constexpr int pace = 500;
}

TaskBarProgress::TaskBarProgress(QObject *parent)
    : QObject(parent)
{
    m_tells.setSingleShot(true);
    connect(&m_tells, &QTimer::timeout, this, &TaskBarProgress::tell);
}

void TaskBarProgress::show(double share)
{
    // Whole hundredths, as such a bar has pixels.
    m_share = std::clamp(double(int(share * 100)) / 100, 0.0, 1.0);
    tellSoon();
}

void TaskBarProgress::hide()
{
    m_share = -1;
    tellSoon();
}

void TaskBarProgress::tellSoon()
{
    if (m_share != m_told && !m_tells.isActive())
        m_tells.start(m_told < 0 || m_share < 0 ? 0 : pace);
}

void TaskBarProgress::tell()
{
    if (m_share == m_told || !DesktopBus::isThere())
        return;
    m_told = m_share;
    QDBusMessage signal =
        QDBusMessage::createSignal(u"/com/canonical/unity/launcherentry/1"_s,
                                   u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
    const bool isShown = m_share >= 0;
    signal << QString("application://"_L1 + ProgramInfo::desktopEntry() + ".desktop"_L1)
           << QVariantMap{{u"progress"_s, isShown ? m_share : 0.0},
                          {u"progress-visible"_s, isShown}};
    DesktopBus::session().send(signal);
}
