#include "TextMoves.h"

#include <QTextBoundaryFinder>

namespace {

/// Code units to either side that are looked at for where a character ends.
constexpr qsizetype reach = 100;

enum class Kind { Break, Blank, Sign, Letter };

Kind kindOf(QChar c)
{
    if (c == u'\n')
        return Kind::Break;
    if (c.isSpace())
        return Kind::Blank;
    if (c.unicode() < 0x80 && !c.isLetterOrNumber() && c != u'_')
        return Kind::Sign;
    return Kind::Letter;
}

qsizetype runEnd(QStringView text, qsizetype at, Kind kind)
{
    while (at < text.size() && kindOf(text[at]) == kind)
        ++at;
    return at;
}

qsizetype runStart(QStringView text, qsizetype at, Kind kind)
{
    while (at > 0 && kindOf(text[at - 1]) == kind)
        --at;
    return at;
}

}

namespace TextMoves {

qsizetype nextCharacter(QStringView text, qsizetype at)
{
    if (at >= text.size() || text[at] == u'\n')
        return qMin(at + 1, text.size());
    const QStringView part = text.sliced(at).left(reach);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, part);
    const qsizetype next = finder.toNextBoundary();
    return at + qMax(qsizetype(1), next);
}

qsizetype previousCharacter(QStringView text, qsizetype at)
{
    if (at <= 1 || text[at - 1] == u'\n')
        return qMax(qsizetype(0), at - 1);
    const qsizetype from = qMax(qsizetype(0), at - reach);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.sliced(from, at - from));
    finder.setPosition(at - from);
    const qsizetype previous = finder.toPreviousBoundary();
    return from + qMax(qsizetype(0), qMin(previous, at - from - 1));
}

qsizetype previousCodePoint(QStringView text, qsizetype at)
{
    const bool pair = at > 1 && text[at - 1].isLowSurrogate() && text[at - 2].isHighSurrogate();
    return qMax(qsizetype(0), at - (pair ? 2 : 1));
}

qsizetype nextWord(QStringView text, qsizetype at)
{
    if (at >= text.size())
        return text.size();
    const Kind kind = kindOf(text[at]);
    if (kind == Kind::Break)
        return at + 1;
    return runEnd(text, runEnd(text, at, kind), Kind::Blank);
}

qsizetype previousWord(QStringView text, qsizetype at)
{
    if (at > 0 && text[at - 1] == u'\n')
        return at - 1;
    at = runStart(text, at, Kind::Blank);
    if (at == 0 || text[at - 1] == u'\n')
        return at;
    return runStart(text, at, kindOf(text[at - 1]));
}

qsizetype wordStart(QStringView text, qsizetype at)
{
    const bool here = at < text.size() && text[at] != u'\n';
    if (!here && (at == 0 || text[at - 1] == u'\n'))
        return at;
    return runStart(text, at, kindOf(here ? text[at] : text[at - 1]));
}

qsizetype wordEnd(QStringView text, qsizetype at)
{
    if (at >= text.size() || text[at] == u'\n')
        return at;
    return runEnd(text, at, kindOf(text[at]));
}

qsizetype lineStart(QStringView text, qsizetype at)
{
    return at > 0 ? text.lastIndexOf(u'\n', at - 1) + 1 : 0;
}

qsizetype lineEnd(QStringView text, qsizetype at)
{
    const qsizetype end = text.indexOf(u'\n', at);
    return end < 0 ? text.size() : end;
}

}
