#include "CookieList.h"

#include "CookieFile.h"

#include <QNetworkCookie>
#include <QWebEngineCookieStore>

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
    const StoredCookie known{cookie.name(), cookie.domain(), cookie.path(), cookie.expirationDate(),
                             cookie.isSecure()};
    if (!m_loaded) {
        m_changes.insert(known.key(), isThere ? std::optional(known) : std::nullopt);
    } else if (isThere) {
        m_cookies.insert(known.key(), known);
    } else {
        m_cookies.remove(known.key());
    }
    emit changed();
}

void CookieList::load()
{
    m_loaded = true;
    // Cookies of an earlier session that ended with it may still stand in the file.
    for (const StoredCookie &cookie : readCookieFile(m_file)) {
        if (cookie.expires.isValid())
            m_cookies.insert(cookie.key(), cookie);
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
