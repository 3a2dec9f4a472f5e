#include "InternetShortcut.h"
#include "IniText.h"
#include "Log.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <limits>
#include <optional>
#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include "FileUpdate.h"
#endif

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

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r';
}

// Where the address is. It nearly always stands in the second line, behind the section's.
IniText::Place urlPlace(QByteArrayView shortcut)
{
    constexpr QByteArrayView usual("[InternetShortcut]\r\nURL=");
    if (!shortcut.startsWith(usual))
        return IniText::find(shortcut, {u"InternetShortcut"_s, u"URL"_s});
    qsizetype begin = usual.size();
    qsizetype end = shortcut.indexOf('\n', begin);
    end = end < 0 ? shortcut.size() : end;
    while (end > begin && isBlank(shortcut[end - 1]))
        --end;
    while (begin < end && isBlank(shortcut[begin]))
        ++begin;
    return {true, true, begin, end, 0};
}

#ifdef Q_OS_UNIX
// With few calls of the system, as thousands of files are read in a row. Not waiting matters for a
// pipe only, which is turned away once it is open.
std::optional<QByteArray> readFile(const QString &path, qint64 &date)
{
    const int file =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0)
        return {};
    std::optional<QByteArray> result;
    struct stat status = {};
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode)
        && status.st_size <= largestShortcut) {
        QByteArray bytes(status.st_size, Qt::Uninitialized);
        const ssize_t read = ::read(file, bytes.data(), static_cast<size_t>(bytes.size()));
        if (read >= 0) {
            bytes.truncate(read);
            date = status.st_mtime;
            result = bytes;
        }
    }
    ::close(file);
    return result;
}
#else
std::optional<QByteArray> readFile(const QString &path, qint64 &date)
{
    const QFileInfo info(path);
    if (info.size() > largestShortcut)
        return {};
    date = info.lastModified().toSecsSinceEpoch();
    return FileUpdate::readAll(path);
}
#endif
}

namespace InternetShortcut {

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
    constexpr int whole = std::numeric_limits<int>::max();
    Contents result;
    const std::optional<QByteArray> bytes = readFile(path, result.date);
    if (!bytes)
        return {};
    const QByteArray stored = asUtf8(*bytes);
    result.url = IniText::valueAt(stored, urlPlace(stored), whole).value_or(QString());
    if (stored.contains("[Orvane]"))
        result.title = IniText::value(stored, {u"Orvane"_s, u"Title"_s}, whole).value_or(QString());
    return result;
}

}
