#include "VisitLine.h"

#include <QDateTime>
#include <QUrl>
#include <algorithm>
#include <array>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype longestAddress = 4000;
constexpr qsizetype longestTitle = 500;
/// UTF-8 bytes that so many characters may take.
constexpr qsizetype longestTitleBytes = 4 * longestTitle;
/// Characters of a title that are looked at: one may be of megabytes, all blanks.
constexpr qsizetype titleLookedAt = 4 * longestTitle;
constexpr qsizetype timeLength = sizeof("2026-11-23T01:20:05Z") - 1;

bool isKeptKind(QByteArrayView address)
{
    static constexpr std::array kinds{QByteArrayView("http://"), QByteArrayView("https://"),
                                      QByteArrayView("file://")};
    return std::any_of(kinds.begin(), kinds.end(),
                       [address](QByteArrayView kind) { return address.startsWith(kind); });
}

/// The number that all of these digits are; -1 where one is none.
int number(QByteArrayView digits)
{
    int value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9')
            return -1;
        value = 10 * value + (digit - '0');
    }
    return value;
}

/// By hand: hundreds of thousands are read at once.
std::optional<qint64> timeOf(QByteArrayView text)
{
    using namespace std::chrono;
    if (text.size() != timeLength || text[4] != '-' || text[7] != '-' || text[10] != 'T'
        || text[13] != ':' || text[16] != ':' || text[19] != 'Z')
        return {};
    const int clock[] = {number(text.sliced(11, 2)), number(text.sliced(14, 2)),
                         number(text.sliced(17, 2))};
    const int date[] = {number(text.first(4)), number(text.sliced(5, 2)),
                        number(text.sliced(8, 2))};
    if (*std::min_element(std::begin(date), std::end(date)) < 1
        || *std::min_element(std::begin(clock), std::end(clock)) < 0)
        return {};
    const year_month_day day{year{date[0]}, month{unsigned(date[1])},
                             std::chrono::day{unsigned(date[2])}};
    if (!day.ok() || clock[0] > 23 || clock[1] > 59 || clock[2] > 60)
        return {};
    const sys_seconds time =
        sys_days(day) + hours(clock[0]) + minutes(clock[1]) + seconds(clock[2]);
    return qint64(time.time_since_epoch().count());
}
}

namespace VisitLine {

QString keptAddress(const QString &address)
{
    if (address.isEmpty() || address.size() > longestAddress)
        return {};
    QUrl url(address);
    if (!url.isValid())
        return {};
    // As the page spells it where that is plain text.
    const bool isPlain = std::all_of(address.cbegin(), address.cend(),
                                     [](QChar c) { return c > u' ' && c < u'\x7f'; });
    const bool namesUser = !url.userInfo().isEmpty();
    url.setUserInfo({});
    const QString kept = isPlain && !namesUser ? address : QString::fromLatin1(url.toEncoded());
    return kept.size() <= longestAddress && isKeptKind(kept.toLatin1()) ? kept : QString();
}

QString keptTitle(const QString &title)
{
    QString line = title.left(titleLookedAt);
    for (QChar &c : line) {
        const QChar::Category kind = c.category();
        if (kind == QChar::Other_Control || kind == QChar::Separator_Line
            || kind == QChar::Separator_Paragraph)
            c = u' ';
    }
    line = line.simplified().left(longestTitle);
    if (line.endsWith(u' ') || (!line.isEmpty() && line.back().isHighSurrogate()))
        line.chop(1);
    return line;
}

QByteArray of(const Visit &visit)
{
    const QString time = QDateTime::fromSecsSinceEpoch(visit.time, Qt::UTC).toString(Qt::ISODate);
    return (time + u'\t' + visit.address + u'\t' + visit.title + u'\n').toUtf8();
}

std::optional<Parts> read(QByteArrayView line)
{
    if (line.endsWith('\r'))
        line.chop(1);
    if (line.size() < timeLength + 2 || line[timeLength] != '\t')
        return {};
    const std::optional<qint64> time = timeOf(line.first(timeLength));
    if (!time)
        return {};
    const QByteArrayView rest = line.sliced(timeLength + 1);
    const qsizetype end = rest.indexOf('\t');
    const QByteArrayView address = end < 0 ? rest : rest.first(end);
    const bool isPlain =
        std::all_of(address.begin(), address.end(), [](char c) { return c > ' ' && c < '\x7f'; });
    if (!isPlain || address.size() > longestAddress || !isKeptKind(address))
        return {};
    const QByteArrayView title = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
    return Parts{*time, address, title.first(std::min(title.size(), longestTitleBytes))};
}

}
