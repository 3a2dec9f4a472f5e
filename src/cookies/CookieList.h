#pragma once

#include <QHash>
#include <QList>
#include <QNetworkCookie>
#include <QObject>
#include <optional>

#include "StoredCookie.h"

class QWebEngineCookieStore;

/// The cookies of a profile. The engine lists none when asked, it tells of changes only: so this
/// notes them from before the first page on, and puts them over what the engine's file holds once
/// the list is wanted.
class CookieList : public QObject {
    Q_OBJECT

public:
    /// `file` is the engine's; empty where it stores none.
    CookieList(QWebEngineCookieStore *store, const QString &file, QObject *parent);

    /// In no order.
    QList<StoredCookie> cookies();
    /// With what they say, for requests that go out beside the engine's; never to be shown or kept.
    QList<QNetworkCookie> withValues();
    /// Asks the engine to delete a cookie; `changed` tells when it is gone. The engine deletes
    /// those of the same name that a page at the cookie's path would be sent with it.
    void remove(const StoredCookie &cookie);
    void removeAll();

signals:
    /// Maybe many times at a page load.
    void changed();

private:
    void note(const QNetworkCookie &cookie, bool isThere);
    void load();

    QWebEngineCookieStore *m_store;
    QString m_file;
    QHash<QByteArray, QNetworkCookie> m_cookies;
    /// Until the list is wanted: what came, and without a value what went.
    QHash<QByteArray, std::optional<QNetworkCookie>> m_changes;
    bool m_loaded = false;
};
