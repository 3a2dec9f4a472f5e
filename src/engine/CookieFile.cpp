#include "CookieFile.h"

#include "Log.h"

#include <QFile>
#include <QLibrary>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
struct sqlite3;
struct sqlite3_stmt;
constexpr int row = 100;
constexpr int done = 101;
constexpr int openReadOnly = 0x1;
constexpr int openUri = 0x40;

/// The few functions needed of the library that keeps such files. It is loaded when it is wanted
/// first: the start of the program is not to pay for it.
class Library {
public:
    Library()
        : m_library(u"sqlite3"_s, 0)
    {
        find(open, "sqlite3_open_v2");
        find(close, "sqlite3_close");
        find(prepare, "sqlite3_prepare_v2");
        find(step, "sqlite3_step");
        find(finalize, "sqlite3_finalize");
        find(text, "sqlite3_column_text");
        find(number, "sqlite3_column_int64");
    }
    bool isUsable() const { return m_usable; }

    int (*open)(const char *, sqlite3 **, int, const char *) = nullptr;
    int (*close)(sqlite3 *) = nullptr;
    int (*prepare)(sqlite3 *, const char *, int, sqlite3_stmt **, const char **) = nullptr;
    int (*step)(sqlite3_stmt *) = nullptr;
    int (*finalize)(sqlite3_stmt *) = nullptr;
    const unsigned char *(*text)(sqlite3_stmt *, int) = nullptr;
    qint64 (*number)(sqlite3_stmt *, int) = nullptr;

private:
    template <typename Function> void find(Function &function, const char *name)
    {
        function = reinterpret_cast<Function>(m_library.resolve(name));
        m_usable = m_usable && function;
    }

    QLibrary m_library;
    bool m_usable = true;
};

const Library &library()
{
    static const Library instance;
    return instance;
}

/// From microseconds since 1601; 0 is none.
QDateTime timeOf(qint64 microseconds)
{
    constexpr qint64 secondsTo1970 = 11644473600;
    if (microseconds == 0)
        return {};
    return QDateTime::fromMSecsSinceEpoch(microseconds / 1000 - secondsTo1970 * 1000);
}

StoredCookie cookieOf(sqlite3_stmt *statement)
{
    const auto text = [statement](int column) {
        return QByteArray(reinterpret_cast<const char *>(library().text(statement, column)));
    };
    return {text(0), QString::fromUtf8(text(1)), QString::fromUtf8(text(2)),
            timeOf(library().number(statement, 3)), library().number(statement, 4) != 0};
}

/// False when there is no such table or the rows do not end well.
bool readRows(sqlite3 *file, QList<StoredCookie> &cookies)
{
    sqlite3_stmt *statement = nullptr;
    if (library().prepare(file, "SELECT name, host_key, path, expires_utc, is_secure FROM cookies",
                          -1, &statement, nullptr)
        != 0)
        return false;
    int result = 0;
    while ((result = library().step(statement)) == row)
        cookies.append(cookieOf(statement));
    library().finalize(statement);
    return result == done;
}
}

QList<StoredCookie> readCookieFile(const QString &path)
{
    if (!QFile::exists(path))
        return {};
    if (!library().isUsable()) {
        qCWarning(lcEngine) << "no library to read" << path;
        return {};
    }
    // Without locks: the engine, in this very process, must never find its file busy.
    const QByteArray name = QUrl::fromLocalFile(path).toEncoded() + "?immutable=1";
    sqlite3 *file = nullptr;
    QList<StoredCookie> cookies;
    const bool opened =
        library().open(name.constData(), &file, openReadOnly | openUri, nullptr) == 0;
    if (!opened || !readRows(file, cookies)) {
        qCWarning(lcEngine) << "cannot read" << path;
        cookies.clear();
    }
    library().close(file);
    return cookies;
}
