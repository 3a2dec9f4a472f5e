#include "CookieList.h"

#include "CookieFile.h"

#include <QNetworkCookie>
#include <QWebEngineCookieStore>

namespace {
StoredCookie storedOf(const QNetworkCookie &cookie)
{
    return {cookie.name(), cookie.domain(), cookie.path(), cookie.expirationDate(),
            cookie.isSecure()};
}
}

CookieList::CookieList(QWebEngineCookieStore *store, const QString &file, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_file(file)
{
    connect(store, &QWebEngineCookieStore::cookieAdded, this,
            [this](const QNetworkCookie &cookie) { note(cookie, true); });
    connect(store, &QWebEngineCookieStore::cookieRemoved, this,
            [this](const QNetworkCookie &cookie) { note(cookie, false); });
}

void CookieList::note(const QNetworkCookie &cookie, bool isThere)
{
    const QByteArray key = storedOf(cookie).key();
    if (!m_loaded) {
        m_changes.insert(key, isThere ? std::optional(cookie) : std::nullopt);
    } else if (isThere) {
        m_cookies.insert(key, cookie);
    } else {
        m_cookies.remove(key);
    }
    emit changed();
}

void CookieList::load()
{
    m_loaded = true;
    // Cookies of an earlier session that ended with it may still stand in the file.
    for (const QNetworkCookie &cookie : readCookieFile(m_file)) {
        if (!cookie.isSessionCookie())
            m_cookies.insert(storedOf(cookie).key(), cookie);
    }
    for (const auto &[key, cookie] : m_changes.asKeyValueRange()) {
        if (cookie)
            m_cookies.insert(key, *cookie);
        else
            m_cookies.remove(key);
    }
    m_changes.clear();
}

QList<StoredCookie> CookieList::cookies()
{
    QList<StoredCookie> result;
    for (const QNetworkCookie &cookie : withValues())
        result.append(storedOf(cookie));
    return result;
}

QList<QNetworkCookie> CookieList::withValues()
{
    if (!m_loaded)
        load();
    return m_cookies.values();
}

void CookieList::remove(const StoredCookie &cookie)
{
    QNetworkCookie named(cookie.name);
    named.setDomain(cookie.domain);
    named.setPath(cookie.path);
    named.setSecure(cookie.secure);
    m_store->deleteCookie(named);
}

void CookieList::removeAll()
{
    m_store->deleteAllCookies();
}
