#include "ToolTipText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longest = 600;
/// Without a break of its own a word longer than this would widen the tool tip.
constexpr int longestWord = 40;

/// A place to break after every `longestWord` characters without a blank.
QString breakable(const QString &text)
{
    constexpr QChar zeroWidthSpace(0x200b);
    QString result;
    result.reserve(text.size() + text.size() / longestWord);
    int run = 0;
    for (const QChar letter : text) {
        run = letter.isSpace() ? 0 : run + 1;
        if (run > longestWord && !letter.isLowSurrogate() && !letter.isMark()) {
            result += zeroWidthSpace;
            run = 1;
        }
        result += letter;
    }
    return result;
}

}

QString wrappedToolTip(const QString &plain)
{
    QString text = plain;
    if (text.size() > longest) {
        const bool splitsPair = text.at(longest - 1).isHighSurrogate();
        text = text.left(splitsPair ? longest - 1 : longest) + u'…';
    }
    return u"<span>"_s + breakable(text).toHtmlEscaped() + u"</span>"_s;
}
