#pragma once

#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>
#include <functional>

/// Keeps a page's requests out of the engine's disk cache while it is active, by a condition in
/// the request's headers: the cache lets conditional requests of the page's own through without
/// reading or writing, and the conditions used always hold or mean nothing to the server.
class CacheBypass : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    /// Whether a form may go from a document of `sender` to `url`.
    using MaySend = std::function<bool(const QUrl &url, const QUrl &sender)>;
    void setMaySend(const MaySend &maySend) { m_maySend = maySend; }
    void setActive(bool active) { m_active = active; }
    void interceptRequest(QWebEngineUrlRequestInfo &info) override;

signals:
    /// The page itself is asked for, not a part of it; again for each redirect.
    void pageRequested(const QByteArray &method);
    /// The page or a frame of it is asked for, with a form where the method is not "GET". Of who
    /// asks, only the site is told, and nothing where that is the user, or a frame without a site.
    void frameRequested(const QUrl &url, const QByteArray &method, const QUrl &asker, bool isPage);
    /// A part of a page is asked for, by a document of `sender`; again for each redirect.
    void partRequested(const QUrl &url, const QUrl &sender);
    /// A script opens a connection that stays.
    void connectionRequested();
    /// A part is asked for by a request that brings something along.
    void sendingRequested();

private:
    MaySend m_maySend;
    bool m_active = false;
};
