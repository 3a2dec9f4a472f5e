#include "InternetShortcut.h"
#include "FileUpdate.h"
#include "IniText.h"
#include "Log.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <limits>

using namespace Qt::StringLiterals;

namespace {
constexpr int longestValue = 999;
constexpr int suffixLength = 4;
// Reading the whole of a larger file would hold the interface.
constexpr qint64 largestShortcut = 16 * 1024 * 1024;

// Other desktops write shortcuts with names in their own script in UTF-16.
QByteArray asUtf8(const QByteArray &bytes)
{
    if (!bytes.startsWith("\xff\xfe") && !bytes.startsWith("\xfe\xff"))
        return bytes;
    QStringDecoder decoder(QStringDecoder::Utf16);
    const QString text = decoder.decode(bytes);
    return text.toUtf8();
}
}

namespace InternetShortcut {

QString url(const QString &file)
{
    if (QFileInfo(file).size() > largestShortcut) {
        qCWarning(lcFiles) << "too large for a shortcut:" << file;
        return {};
    }
    const std::optional<QByteArray> stored = FileUpdate::readAll(file);
    if (!stored)
        return {};
    return IniText::value(asUtf8(*stored), {u"InternetShortcut"_s, u"URL"_s}, longestValue)
        .value_or(QString());
}

QString caption(const QString &fileName)
{
    return fileName.chopped(std::min<qsizetype>(suffixLength, fileName.size()));
}

QByteArray bytes(const QString &url, const QString &title)
{
    QString line = url;
    line.removeIf([](QChar character) { return character < u' '; });
    QByteArray result = "[InternetShortcut]\r\nURL="_ba + line.toUtf8() + "\r\n"_ba;
    if (!title.isEmpty())
        result += "[Orvane]\r\nTitle="_ba + title.toUtf8() + "\r\n"_ba;
    return result;
}

Contents contents(const QString &path)
{
    const QFileInfo info(path);
    QFile file(path);
    // Opening a pipe would wait for whoever writes to it.
    if (!info.isFile() || info.size() > largestShortcut
        || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    constexpr int whole = std::numeric_limits<int>::max();
    const QByteArray stored = asUtf8(file.readAll());
    Contents result;
    result.url =
        IniText::value(stored, {u"InternetShortcut"_s, u"URL"_s}, whole).value_or(QString());
    if (stored.contains("[Orvane]"))
        result.title = IniText::value(stored, {u"Orvane"_s, u"Title"_s}, whole).value_or(QString());
    result.date = info.lastModified().toSecsSinceEpoch();
    return result;
}

}
