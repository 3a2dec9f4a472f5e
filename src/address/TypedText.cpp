#include "TypedText.h"

#include <QUrl>
#include <algorithm>

namespace {
bool isLineBreak(QChar c)
{
    return c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f' || c == QChar::LineSeparator
        || c == QChar::ParagraphSeparator || c == u'\x85';
}

bool isControl(QChar c)
{
    return c < u' ' || c == u'\x7f' || isLineBreak(c);
}

/// Would show what follows in another order than it is in.
bool turnsDirection(QChar c)
{
    return (c >= u'\u202A' && c <= u'\u202E') || (c >= u'\u2066' && c <= u'\u2069')
        || c == u'\u200E' || c == u'\u200F' || c == u'\u061C';
}

bool isCleaned(QChar c)
{
    return isControl(c) || turnsDirection(c);
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}
}

QString TypedText::clean(const QString &text, const QString &lineBreak)
{
    if (std::none_of(text.cbegin(), text.cend(), isCleaned))
        return text;
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype start = i;
        bool breaks = false;
        while (i < text.size() && (isBlank(text.at(i)) || isLineBreak(text.at(i))))
            breaks |= isLineBreak(text.at(i++));
        if (breaks)
            result += lineBreak;
        else
            result += QString(i - start, u' ');
        if (i < text.size() && turnsDirection(text.at(i)))
            result += QString::fromLatin1(QUrl::toPercentEncoding(text.mid(i, 1)));
        else if (i < text.size() && !isControl(text.at(i)))
            result += text.at(i);
        if (i < text.size())
            ++i;
    }
    return result;
}
