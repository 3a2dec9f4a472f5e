#include "CookieFile.h"

#include "Log.h"

#include <QDateTime>
#include <QFile>
#include <QUrl>
#include <sqlite3.h>

namespace {
/// From microseconds since 1601; 0 is none.
QDateTime timeOf(qint64 microseconds)
{
    constexpr qint64 secondsTo1970 = 11644473600;
    if (microseconds == 0)
        return {};
    return QDateTime::fromMSecsSinceEpoch(microseconds / 1000 - secondsTo1970 * 1000);
}

QNetworkCookie cookieOf(sqlite3_stmt *statement)
{
    const auto text = [statement](int column) {
        return QByteArray(reinterpret_cast<const char *>(sqlite3_column_text(statement, column)));
    };
    QNetworkCookie cookie(text(0), text(5));
    cookie.setDomain(QString::fromUtf8(text(1)));
    cookie.setPath(QString::fromUtf8(text(2)));
    cookie.setExpirationDate(timeOf(sqlite3_column_int64(statement, 3)));
    cookie.setSecure(sqlite3_column_int64(statement, 4) != 0);
    return cookie;
}

/// False when there is no such table or the rows do not end well.
bool readRows(sqlite3 *file, QList<QNetworkCookie> &cookies)
{
    sqlite3_stmt *statement = nullptr;
    constexpr char query[] =
        "SELECT name, host_key, path, expires_utc, is_secure, value FROM cookies";
    if (sqlite3_prepare_v2(file, query, -1, &statement, nullptr) != SQLITE_OK)
        return false;
    int result = 0;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW)
        cookies.append(cookieOf(statement));
    sqlite3_finalize(statement);
    return result == SQLITE_DONE;
}
}

QList<QNetworkCookie> readCookieFile(const QString &path)
{
    if (!QFile::exists(path))
        return {};
    // Without locks: the engine, in this very process, must never find its file busy.
    const QByteArray name = QUrl::fromLocalFile(path).toEncoded() + "?immutable=1";
    sqlite3 *file = nullptr;
    QList<QNetworkCookie> cookies;
    const bool opened =
        sqlite3_open_v2(name.constData(), &file, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr)
        == SQLITE_OK;
    if (!opened || !readRows(file, cookies)) {
        qCWarning(lcEngine) << "cannot read" << path;
        cookies.clear();
    }
    sqlite3_close(file);
    return cookies;
}
