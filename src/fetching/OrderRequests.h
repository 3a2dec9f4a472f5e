#pragma once

#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>

/// What a page asks for that is there for one file alone.
class OrderRequests : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    /// The page that the file is asked for from, of which a server is told what engines tell.
    void setReferrer(const QUrl &page) { m_referrer = page; }
    /// The last address asked for: another one where a server has sent the engine on.
    QUrl last() const { return m_last; }
    void interceptRequest(QWebEngineUrlRequestInfo &info) override;

private:
    QUrl m_referrer;
    QUrl m_last;
};
