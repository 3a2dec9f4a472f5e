#include "WebThread.h"

#include <QCoreApplication>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QUrl>

namespace {
/// By its domain alone: the way there may lead over several paths.
bool isOf(const QNetworkCookie &cookie, const QString &host)
{
    const QString domain = cookie.domain();
    return domain == host
        || (domain.startsWith(u'.') && (host.endsWith(domain) || domain == u'.' + host));
}
}

/// Gives what it was given.
class CookieJar : public QNetworkCookieJar {
public:
    using QNetworkCookieJar::QNetworkCookieJar;
    void set(const QList<QNetworkCookie> &cookies, const QString &host)
    {
        QList<QNetworkCookie> own = cookies;
        own.removeIf([&host](const QNetworkCookie &each) { return !isOf(each, host); });
        setAllCookies(own);
    }
};

std::shared_ptr<WebThread> WebThread::shared()
{
    static std::weak_ptr<WebThread> one;
    std::shared_ptr<WebThread> result = one.lock();
    if (!result) {
        // The last to let go may be in the thread itself, which cannot wait for its own end.
        result.reset(new WebThread, [](WebThread *web) {
            QMetaObject::invokeMethod(QCoreApplication::instance(), [web] { delete web; });
        });
        one = result;
    }
    return result;
}

WebThread::WebThread()
    : m_manager(new QNetworkAccessManager)
    , m_cookies(new CookieJar)
{
    m_manager->setCookieJar(m_cookies);
    m_manager->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_manager, &QObject::deleteLater);
    m_thread.start();
}

WebThread::~WebThread()
{
    m_thread.quit();
    m_thread.wait();
}

void WebThread::setCookies(const QList<QNetworkCookie> &cookies, const QUrl &address)
{
    m_cookies->set(cookies, address.host());
}
