#pragma once

#include <QList>
#include <QNetworkAccessManager>
#include <QThread>

#include <memory>

class CookieJar;
class QNetworkCookie;
class QUrl;

/// The thread of the requests of our own: what comes goes to the disk there, and a slow one keeps
/// the server waiting, not the interface. There is one while anybody has it.
class WebThread {
public:
    static std::shared_ptr<WebThread> shared();
    ~WebThread();
    WebThread(const WebThread &) = delete;
    WebThread &operator=(const WebThread &) = delete;

    QThread *thread() { return &m_thread; }
    /// To be used in the thread only.
    QNetworkAccessManager &manager() { return *m_manager; }
    /// Those of them that are for the host of `address`, from the next request on: where a server
    /// sends one on to another host, nobody is told there who the user is. In the thread.
    void setCookies(const QList<QNetworkCookie> &cookies, const QUrl &address);

private:
    WebThread();

    QThread m_thread;
    QNetworkAccessManager *m_manager;
    CookieJar *m_cookies;
};
