#include "CacheBypass.h"

#include <QWebEngineUrlRequestInfo>

void CacheBypass::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    const bool isPage = info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
    if (isPage)
        emit pageRequested(info.requestMethod());
    else
        emit partRequested(info.requestUrl(), info.initiator());
    if (info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeWebSocket)
        emit connectionRequested();
    else if (info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeXhr
             && (info.requestMethod() == "POST" || info.requestMethod() == "PUT"))
        emit sendingRequested();
    const bool isFrame =
        isPage || info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeSubFrame;
    if (isFrame && info.requestMethod() != "GET" && m_maySend
        && !m_maySend(info.requestUrl(), info.initiator())) {
        info.block(true);
        return;
    }
    if (isFrame)
        emit frameRequested(info.requestUrl(), info.requestMethod(), info.initiator(), isPage);
    if (!m_active)
        return;
    switch (info.resourceType()) {
    case QWebEngineUrlRequestInfo::ResourceTypeMedia:
    case QWebEngineUrlRequestInfo::ResourceTypeXhr:
        // These ask for ranges. An If-Range that does not match would turn every range into the
        // whole file; "not changed since a far day" holds for whole and part alike.
        info.setHttpHeader("If-Unmodified-Since", "Thu, 31 Dec 2037 23:59:59 GMT");
        break;
    default:
        // Without a Range a server must ignore it.
        info.setHttpHeader("If-Range", "\"x\"");
        break;
    }
}
