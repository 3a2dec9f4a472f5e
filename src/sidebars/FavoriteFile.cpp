#include "FavoriteFile.h"
#include "InternetShortcut.h"
#include "Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

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

// A name that another desktop keeps for a device, with any extension.
bool isDeviceName(const QString &name)
{
    // Few names begin like one, and tens of thousands come in a row.
    if (!u"cpanlCPANL"_s.contains(name.front()))
        return false;
    static const QRegularExpression device(u"^(con|prn|aux|nul|com[0-9]|lpt[0-9])\\s*(\\.|$)"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}

void trimEnds(QString &name)
{
    while (name.endsWith(u'.') || name.endsWith(u' '))
        name.chop(1);
    name = std::move(name).trimmed();
}

QString cutToBytes(const QString &name)
{
    QByteArray bytes = name.toUtf8();
    if (bytes.size() <= longestName)
        return QString::fromUtf8(bytes);
    qsizetype end = longestName;
    // Not in the middle of a character.
    while (end > 0 && (bytes.at(end) & 0xc0) == 0x80)
        --end;
    return QString::fromUtf8(bytes.first(end));
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

bool writeNew(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    if (file.write(bytes) == bytes.size() && file.flush())
        return true;
    file.close();
    file.remove();
    return false;
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
    trimEnds(result);
    result = cutToBytes(result);
    trimEnds(result);
    if (result.isEmpty())
        return otherwise;
    return isDeviceName(result) ? u'_' + result : result;
}

std::optional<QString> create(const QString &folder, const QString &name, const QString &url)
{
    const QByteArray bytes = InternetShortcut::bytes(url);
    return firstFree(folder, name, u".url"_s,
                     [&bytes](const QString &path) { return writeNew(path, bytes); });
}

std::optional<QString> createFolder(const QString &folder, const QString &name)
{
    return firstFree(folder, name, {}, [](const QString &path) { return QDir().mkdir(path); });
}

}
