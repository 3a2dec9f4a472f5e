#include "FavoriteFile.h"
#include "FileName.h"
#include "FileWriter.h"
#include "InternetShortcut.h"
#include "Log.h"

#include <QDir>
#include <QFileInfo>

#include <functional>

using namespace Qt::StringLiterals;

namespace {
// Of the 255 bytes a name may have, room is kept for a number and the extension.
constexpr qsizetype longestName = 240;
constexpr int highestNumber = 9999;

bool fitsNowhere(QChar character)
{
    constexpr QStringView reserved(u"\\/:*?\"<>|");
    return character < u' ' || character == u'\x7f' || reserved.contains(character);
}

void trimEnds(QString &name)
{
    while (name.endsWith(u'.') || name.endsWith(u' '))
        name.chop(1);
    name = std::move(name).trimmed();
}

QString numbered(const QString &name, int number)
{
    return number == 1 ? name : u"%1 (%2)"_s.arg(name).arg(number);
}

bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

// The first numbered path that `make` could make; nothing when one cannot be made though free.
std::optional<QString> firstFree(const QString &folder, const QString &name,
                                 const QString &extension,
                                 const std::function<bool(const QString &)> &make)
{
    if (!QDir().mkpath(folder)) {
        qCWarning(lcFiles) << "cannot make the folder" << folder;
        return {};
    }
    for (int number = 1; number <= highestNumber; ++number) {
        QString path = QDir(folder).filePath(numbered(name, number) + extension);
        if (isTaken(path))
            continue;
        if (make(path))
            return path;
        // Another program may have been quicker.
        if (!isTaken(path)) {
            qCWarning(lcFiles) << "cannot make" << path;
            return {};
        }
    }
    return {};
}

}

namespace FavoriteFile {

QString name(const QString &text, const QString &otherwise)
{
    // What is cut off in the end need not be looked at.
    QString result = text.left(2 * longestName);
    for (QChar &character : result) {
        if (fitsNowhere(character))
            character = u'_';
    }
    result = FileName::visible(result);
    trimEnds(result);
    result = FileName::cut(result, longestName);
    trimEnds(result);
    if (result.isEmpty())
        return otherwise;
    return FileName::isDevice(result) ? u'_' + result : result;
}

std::optional<QString> create(const QString &folder, const QString &name, const QString &url,
                              const QString &title)
{
    const QString ending = u".url"_s;
    return firstFree(folder, name, ending, [&](const QString &path) {
        const bool isNamedSo = path.endsWith(u'/' + title + ending);
        const QByteArray bytes = InternetShortcut::bytes(url, isNamedSo ? QString() : title);
        return bool(FileWriter::create(path, bytes));
    });
}

std::optional<QString> createFolder(const QString &folder, const QString &name)
{
    return firstFree(folder, name, {}, [](const QString &path) { return QDir().mkdir(path); });
}

}
