#include "CookiePolicy.h"

#include <QUrl>
#include <QWebEngineCookieStore>
#include <QWebEngineProfile>

CookiePolicy &CookiePolicy::instance()
{
    static CookiePolicy policy;
    return policy;
}

void CookiePolicy::install(QWebEngineProfile *profile)
{
    profile->cookieStore()->setCookieFilter(
        [](const QWebEngineCookieStore::FilterRequest &request) {
            if (!request.thirdParty || !instance().m_refuses)
                return true;
            instance().noteRefusal(request.firstPartyUrl.host());
            return false;
        });
}

void CookiePolicy::noteRefusal(const QString &pageHost)
{
    const QMutexLocker locker(&m_mutex);
    const bool toldSoon = !m_untold.isEmpty();
    m_untold.insert(pageHost);
    if (!toldSoon)
        QMetaObject::invokeMethod(this, &CookiePolicy::tellRefusals, Qt::QueuedConnection);
}

void CookiePolicy::tellRefusals()
{
    QSet<QString> hosts;
    {
        const QMutexLocker locker(&m_mutex);
        hosts.swap(m_untold);
    }
    for (const QString &host : std::as_const(hosts))
        emit refused(host);
}
