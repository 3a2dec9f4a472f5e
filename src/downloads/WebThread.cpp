#include "WebThread.h"

#include <QCoreApplication>
#include <QNetworkCookieJar>

/// Gives what it was given.
class CookieJar : public QNetworkCookieJar {
public:
    using QNetworkCookieJar::QNetworkCookieJar;
    void set(const QList<QNetworkCookie> &cookies) { setAllCookies(cookies); }
};

std::shared_ptr<WebThread> WebThread::shared()
{
    static std::weak_ptr<WebThread> one;
    std::shared_ptr<WebThread> result = one.lock();
    if (!result) {
        // The last to let go may be in the thread itself, which cannot wait for its own end.
        result.reset(new WebThread, [](WebThread *web) {
            QMetaObject::invokeMethod(qApp, [web] { delete web; });
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

void WebThread::setCookies(const QList<QNetworkCookie> &cookies)
{
    m_cookies->set(cookies);
}
