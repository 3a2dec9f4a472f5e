#include "DownloadRecord.h"

#include "FileName.h"
#include "StageName.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype idLength = 32;
/// Bytes; an address that is longer is not kept.
constexpr qsizetype longestValue = 8192;
constexpr qsizetype longestValidator = 1024;
constexpr qsizetype longestDetail = 500;

template <typename Value> struct Word {
    Value value;
    QLatin1StringView word;
};

using State = Download::State;
constexpr std::array states{
    Word<State>{State::Running, "Running"_L1},
    Word<State>{State::Paused, "Paused"_L1},
    Word<State>{State::Held, "Held"_L1},
    Word<State>{State::Unplaced, "Unplaced"_L1},
    Word<State>{State::Finishing, "Finishing"_L1},
    Word<State>{State::Done, "Done"_L1},
    Word<State>{State::Cancelled, "Cancelled"_L1},
    Word<State>{State::Failed, "Failed"_L1},
    Word<State>{State::Unfinished, "Unfinished"_L1},
};

using Problem = Download::Problem;
constexpr std::array problems{
    Word<Problem>{Problem::None, ""_L1},
    Word<Problem>{Problem::NoRoom, "NoRoom"_L1},
    Word<Problem>{Problem::FolderGone, "FolderGone"_L1},
    Word<Problem>{Problem::NotAllowed, "NotAllowed"_L1},
    Word<Problem>{Problem::WriteError, "WriteError"_L1},
    Word<Problem>{Problem::ConnectionLost, "ConnectionLost"_L1},
    Word<Problem>{Problem::ServerRefused, "ServerRefused"_L1},
    Word<Problem>{Problem::WrongLength, "WrongLength"_L1},
    Word<Problem>{Problem::FileChanged, "FileChanged"_L1},
    Word<Problem>{Problem::NoRanges, "NoRanges"_L1},
    Word<Problem>{Problem::InUse, "InUse"_L1},
    Word<Problem>{Problem::Other, "Other"_L1},
};

template <typename Table> auto valueOf(const Table &table, const QString &word, auto otherwise)
{
    for (const auto &each : table) {
        if (word.compare(each.word, Qt::CaseInsensitive) == 0)
            return each.value;
    }
    return otherwise;
}

template <typename Table> QString wordOf(const Table &table, auto value)
{
    for (const auto &each : table) {
        if (each.value == value)
            return each.word;
    }
    return {};
}

/// A value that is cut would be another one.
QString textOf(const IniText::Section &section, QByteArrayView key)
{
    const QByteArrayView value = section.value(key);
    const qsizetype end = value.indexOf('\0');
    return value.size() > longestValue ? QString()
                                       : QString::fromUtf8(end < 0 ? value : value.first(end));
}

qint64 numberOf(const IniText::Section &section, QByteArrayView key, qint64 least)
{
    bool ok = false;
    const qint64 number = textOf(section, key).toLongLong(&ok);
    return ok && number >= least ? number : least;
}

/// One that names a password tells it to whoever reads the file.
QUrl withoutUser(const QUrl &address)
{
    return address.adjusted(QUrl::RemoveUserInfo);
}

QUrl addressOf(const IniText::Section &section, QByteArrayView key)
{
    return withoutUser(QUrl(textOf(section, key), QUrl::StrictMode));
}

QString folderOf(const IniText::Section &section)
{
    const QString folder = textOf(section, "Folder");
    return QDir::isAbsolutePath(folder) ? QDir::cleanPath(folder) : QString();
}

/// Removing a download removes its stage: that must be one.
QString stageOf(const IniText::Section &section)
{
    const QString stage = QDir::cleanPath(textOf(section, "Stage"));
    const bool isOne = QDir::isAbsolutePath(stage)
        && StageName::matches(QFileInfo(stage).fileName(), StageName::Kind::Download);
    return isOne ? stage : QString();
}

/// Goes into a header as it is.
QByteArray validatorOf(const IniText::Section &section, QByteArrayView key)
{
    const QByteArray value = textOf(section, key).toLatin1();
    const bool isUsable = value.size() <= longestValidator
        && std::none_of(value.cbegin(), value.cend(),
                        [](char c) { return uchar(c) < 0x20 || uchar(c) == 0x7f; });
    return isUsable ? value : QByteArray();
}

/// Anything but a plain no is a yes.
bool flagOf(const IniText::Section &section, QByteArrayView key)
{
    return section.value(key) != "0";
}

QString textOf(bool flag)
{
    return flag ? QString() : u"0"_s;
}

QDateTime timeOf(const IniText::Section &section, QByteArrayView key)
{
    return QDateTime::fromString(textOf(section, key), Qt::ISODateWithMs);
}

QString textOf(const QDateTime &time)
{
    return time.isValid() ? time.toUTC().toString(Qt::ISODateWithMs) : QString();
}

QString textOf(const QUrl &address)
{
    const QByteArray text = withoutUser(address).toEncoded();
    return text.size() > longestValue ? QString() : QString::fromLatin1(text);
}

/// Where pages are kept out of the history, so is the address, but for what can be continued.
QUrl keptAddress(const Download &download)
{
    return download.leavesTrace || !download.stage.isEmpty() ? download.address : QUrl();
}
}

namespace DownloadRecord {

bool isId(QByteArrayView section)
{
    return section.size() == idLength && std::all_of(section.begin(), section.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
           });
}

std::optional<Download> read(const IniText::Section &section)
{
    Download download;
    download.id = QString::fromLatin1(section.name).toLower();
    download.name = textOf(section, "Name");
    download.folder = folderOf(section);
    download.address = addressOf(section, "Address");
    if (!isId(section.name) || download.folder.isEmpty() || download.name.isEmpty())
        return {};
    if (!FileName::isFit(download.name))
        download.name = FileName::from(download.name, {}, {});
    download.stage = stageOf(section);
    download.page = addressOf(section, "Page");
    download.size = numberOf(section, "Size", -1);
    download.received = numberOf(section, "Received", 0);
    download.began = timeOf(section, "Began");
    download.ended = timeOf(section, "Ended");
    download.state = valueOf(states, textOf(section, "State"), State::Unfinished);
    download.problem = valueOf(problems, textOf(section, "Problem"), Problem::Other);
    download.detail = FileName::visible(textOf(section, "Detail").left(longestDetail));
    download.etag = validatorOf(section, "ETag");
    download.lastModified = validatorOf(section, "LastModified");
    download.isRepeatable = download.isOfWeb() && flagOf(section, "Repeatable");
    download.leavesTrace = flagOf(section, "Trace");
    return download;
}

QList<Line> lines(const Download &download)
{
    return {
        {"Name", download.name},
        {"Folder", download.folder},
        {"Stage", download.stage},
        {"Address", textOf(keptAddress(download))},
        {"Page", textOf(download.page)},
        {"Size", QString::number(download.size)},
        {"Received", QString::number(download.received)},
        {"Began", textOf(download.began)},
        {"Ended", textOf(download.ended)},
        {"State", wordOf(states, download.state)},
        {"Problem", wordOf(problems, download.problem)},
        {"Detail", download.detail.left(longestDetail)},
        {"ETag", QString::fromLatin1(download.etag)},
        {"LastModified", QString::fromLatin1(download.lastModified)},
        {"Repeatable", textOf(download.isRepeatable)},
        {"Trace", textOf(download.leavesTrace)},
    };
}

}
