#include "RangeAnswer.h"

#include <algorithm>

namespace {
using Kind = RangeVerdict::Kind;
using Problem = Download::Problem;

constexpr int ok = 200;
constexpr int partial = 206;
constexpr int beyondTheEnd = 416;
constexpr int notFound = 404;
constexpr int gone = 410;
constexpr int tooMany = 429;
constexpr int firstServerError = 500;

/// By a weak one a server tells what is as good as the same, not what is the same.
bool isStrong(const QByteArray &etag)
{
    return etag.startsWith('"') && etag.endsWith('"') && etag.size() > 1;
}

/// Digits alone; -1 for anything else.
qint64 number(const QByteArray &text)
{
    const bool isNumber = !text.isEmpty()
        && std::all_of(text.cbegin(), text.cend(), [](char c) { return c >= '0' && c <= '9'; });
    bool fits = false;
    const qint64 value = isNumber ? text.toLongLong(&fits) : -1;
    return fits ? value : -1;
}

/// "bytes 5-9/10" as its three parts.
QList<QByteArray> partsOf(const QByteArray &contentRange)
{
    constexpr QByteArrayView unit("bytes ");
    const QByteArray text = contentRange.trimmed();
    const qsizetype slash = text.indexOf('/');
    if (!text.toLower().startsWith(unit) || slash < 0)
        return {{}, {}, {}};
    const QByteArray range = text.sliced(unit.size(), slash - unit.size()).trimmed();
    const qsizetype dash = range.indexOf('-');
    const bool hasRange = dash >= 0;
    return {hasRange ? range.first(dash) : QByteArray(),
            hasRange ? range.sliced(dash + 1) : QByteArray(), text.sliced(slash + 1).trimmed()};
}

bool isCoded(const RangeAnswer &answer)
{
    const QByteArray coding = answer.contentEncoding.trimmed().toLower();
    return !coding.isEmpty() && coding != "identity";
}

bool isOther(const QByteArray &asked, const QByteArray &answered)
{
    return !asked.isEmpty() && !answered.isEmpty() && asked != answered;
}

/// What is said must agree. By a condition that the server took, it need not say all of it.
bool isSameFile(const RangeAsked &asked, const RangeAnswer &answer)
{
    const qint64 total = answer.total();
    return !isOther(asked.etag, answer.etag) && !isOther(asked.lastModified, answer.lastModified)
        && (asked.size < 0 || total < 0 || total == asked.size);
}

RangeVerdict judgePart(const RangeAsked &asked, const RangeAnswer &answer)
{
    const qint64 total = answer.total();
    // The name is said with each part, or the server does not know what it was asked.
    const bool isNamed = !isStrong(asked.etag) || !answer.etag.isEmpty();
    if (isCoded(answer) || !isNamed || !isSameFile(asked, answer))
        return {Kind::AskAnew, Problem::FileChanged};
    const qint64 last = number(partsOf(answer.contentRange).at(1));
    const bool isRest = answer.first() == asked.from && last >= asked.from
        && (total < 0 || last == total - 1)
        && (answer.contentLength < 0 || answer.contentLength == last - asked.from + 1);
    if (!isRest)
        return {Kind::AskAnew, Problem::NoRanges};
    return {Kind::Append, Problem::None, total < 0 ? last + 1 : total};
}

RangeVerdict judgeWhole(const RangeAsked &asked, const RangeAnswer &answer)
{
    const qint64 size = isCoded(answer) ? -1 : answer.contentLength;
    const bool isAsked = asked.from == 0;
    const bool isSame =
        isSameFile(asked, answer) && (asked.size < 0 || size < 0 || size == asked.size);
    const Problem problem = isAsked ? Problem::None
        : isSame                    ? Problem::NoRanges
                                    : Problem::FileChanged;
    // The bytes would be others than those of the file.
    return {isCoded(answer) ? Kind::Page : Kind::Anew, problem, size};
}

RangeVerdict judgeEnd(const RangeAsked &asked, const RangeAnswer &answer)
{
    if (isSameFile(asked, answer) && answer.total() == asked.from)
        return {Kind::Whole, Problem::None, asked.from};
    return {Kind::AskAnew, Problem::FileChanged};
}
}

qint64 RangeAnswer::total() const
{
    if (status == ok)
        return contentEncoding.isEmpty() ? contentLength : -1;
    return number(partsOf(contentRange).at(2));
}

qint64 RangeAnswer::first() const
{
    return number(partsOf(contentRange).at(0));
}

QByteArray RangeAsked::condition() const
{
    return isStrong(etag) ? etag : lastModified;
}

RangeVerdict judge(const RangeAsked &asked, const RangeAnswer &answer)
{
    switch (answer.status) {
    case ok:
        return judgeWhole(asked, answer);
    case partial:
        return judgePart(asked, answer);
    case beyondTheEnd:
        return judgeEnd(asked, answer);
    case notFound:
    case gone:
    case tooMany:
        return {Kind::Refused};
    default:
        return {answer.status >= firstServerError ? Kind::Refused : Kind::Page};
    }
}
