#include "InternetShortcut.h"
#include "IniText.h"
#include "Log.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

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
    // Opening a pipe would wait for whoever writes to it.
    const QFileInfo info(file);
    return info.isFile() ? urlOfPlainFile(file, info.size()) : QString();
}

QString urlOfPlainFile(const QString &file, qint64 size)
{
    if (size > largestShortcut) {
        qCWarning(lcFiles) << "too large for a shortcut:" << file;
        return {};
    }
    QFile shortcut(file);
    if (!shortcut.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    // A file that has grown since is read as far as it was; one that has shrunk ends earlier.
    const QByteArray bytes = asUtf8(shortcut.read(size));
    return IniText::value(bytes, {u"InternetShortcut"_s, u"URL"_s}, longestValue)
        .value_or(QString());
}

QString caption(const QString &fileName)
{
    return fileName.chopped(std::min<qsizetype>(suffixLength, fileName.size()));
}

QByteArray bytes(const QString &url)
{
    QString line = url;
    line.removeIf([](QChar character) { return character < u' '; });
    return "[InternetShortcut]\r\nURL="_ba + line.toUtf8() + "\r\n"_ba;
}

}
