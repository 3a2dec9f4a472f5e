#include "ZoomKeeper.h"

#include "SiteZoom.h"

#include <QCoreApplication>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

ZoomKeeper &ZoomKeeper::instance()
{
    static ZoomKeeper keeper;
    return keeper;
}

ZoomKeeper::ZoomKeeper()
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(300ms);
    connect(&m_timer, &QTimer::timeout, this, &ZoomKeeper::flush);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &ZoomKeeper::flush);
}

int ZoomKeeper::percent(const QString &site) const
{
    const auto unwritten = m_unwritten.constFind(site);
    return unwritten != m_unwritten.constEnd() ? *unwritten : SiteZoom::percent(site);
}

void ZoomKeeper::put(const QString &site, int percent)
{
    m_unwritten.insert(site, percent);
    if (!m_due.contains(site))
        m_due.append(site);
    m_timer.start();
    emit changed(site, percent);
}

void ZoomKeeper::flush()
{
    m_timer.stop();
    const QStringList due = std::exchange(m_due, {});
    for (const QString &site : due) {
        WriteResult result = SiteZoom::keep(site, m_unwritten.value(site));
        if (result)
            m_unwritten.remove(site);
        result.leaveToLog();
    }
}

WriteResult ZoomKeeper::forget(const QStringList &sites)
{
    flush();
    WriteResult result = SiteZoom::forget(sites);
    if (result)
        takeBack(sites);
    return result;
}

WriteResult ZoomKeeper::forgetAll()
{
    flush();
    QStringList sites = m_unwritten.keys();
    for (const SiteZoom::Kept &each : SiteZoom::all())
        sites.append(each.site);
    WriteResult result = SiteZoom::forgetAll();
    if (result)
        takeBack(sites);
    return result;
}

void ZoomKeeper::takeBack(const QStringList &sites)
{
    for (const QString &site : sites) {
        m_unwritten.remove(site);
        emit changed(site, SiteZoom::usual);
    }
}
