#include "OrderRequests.h"

#include <QWebEngineUrlRequestInfo>

using namespace Qt::StringLiterals;

namespace {
bool isWeb(const QUrl &url)
{
    return url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
}

QUrl siteOf(const QUrl &url)
{
    return url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment
                        | QUrl::RemoveUserInfo);
}

/// All of the address for its own site, for others no more than the site, and for a connection
/// that is less safe than the page's nothing.
QByteArray referrerFor(const QUrl &asked, const QUrl &page)
{
    if (!isWeb(page) || (page.scheme() == "https"_L1 && asked.scheme() != "https"_L1))
        return {};
    const QUrl site = siteOf(page);
    if (site != siteOf(asked))
        return site.toEncoded() + '/';
    return page.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment).toEncoded();
}
}

void OrderRequests::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    m_last = info.requestUrl();
    const QByteArray referrer = referrerFor(m_last, m_referrer);
    if (!referrer.isEmpty())
        info.setHttpHeader("Referer", referrer);
}
