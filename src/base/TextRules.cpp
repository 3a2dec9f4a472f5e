#include "TextRules.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {
constexpr int tabCharacters = 10;

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

qsizetype skipDigits(QStringView text, qsizetype at)
{
    while (at < text.size() && isDigit(text[at]))
        ++at;
    return at;
}

bool isSign(QStringView text, qsizetype at)
{
    return at < text.size() && (text[at] == u'+' || text[at] == u'-');
}

// Sign, digits with at most one point among or beside them, exponent: nothing else is a number.
bool isDecimal(QStringView text)
{
    const qsizetype start = isSign(text, 0) ? 1 : 0;
    qsizetype at = skipDigits(text, start);
    qsizetype digits = at - start;
    if (at < text.size() && text[at] == u'.') {
        const qsizetype fraction = at + 1;
        at = skipDigits(text, fraction);
        digits += at - fraction;
    }
    if (digits == 0)
        return false;
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        const qsizetype exponent = isSign(text, at + 1) ? at + 2 : at + 1;
        at = skipDigits(text, exponent);
        if (at == exponent)
            return false;
    }
    return at == text.size();
}

QStringView trimmedView(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

bool startsWord(QChar separator)
{
    return separator == u'\0' || separator == u' ' || (separator >= u'\t' && separator <= u'\r');
}

// The length in UTF-16 units of the first `count` characters, or of all when there are fewer.
qsizetype unitsOf(QStringView text, qsizetype count)
{
    qsizetype at = 0;
    for (qsizetype i = 0; i < count && at < text.size(); ++i) {
        const bool pair =
            text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        at += pair ? 2 : 1;
    }
    return at;
}
}

std::optional<bool> textToBoolean(const QString &text)
{
    const QStringView trimmed = trimmedView(text);
    if (trimmed.compare("true"_L1, Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare("false"_L1, Qt::CaseInsensitive) == 0)
        return false;
    const std::optional<double> number = textToNumber(text);
    if (!number)
        return {};
    return *number != 0.0;
}

std::optional<double> textToNumber(const QString &text)
{
    const QStringView trimmed = trimmedView(text);
    if (!isDecimal(trimmed))
        return {};
    const double number = trimmed.toDouble();
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

QString booleanText(bool value)
{
    return value ? u"True"_s : u"False"_s;
}

QString properCase(const QString &text)
{
    QString result;
    result.reserve(text.size());
    bool wordStart = true;
    for (qsizetype at = 0; at < text.size();) {
        const QStringView character = QStringView(text).sliced(at);
        const qsizetype units = unitsOf(character, 1);
        const char32_t code = units == 2 ? QChar::surrogateToUcs4(character[0], character[1])
                                         : char32_t(character[0].unicode());
        const char32_t cased = wordStart ? QChar::toUpper(code) : QChar::toLower(code);
        result.append(QStringView(QChar::fromUcs4(cased)));
        wordStart = startsWord(character[0]);
        at += units;
    }
    return result;
}

QString tabCaption(const QString &title)
{
    // Each character shown comes from at most two of the title, so a title of any length costs
    // no more than a short one.
    const QStringView trimmed = trimmedView(title);
    const QStringView needed = trimmed.first(unitsOf(trimmed, 2 * (tabCharacters + 1)));
    const QString caption = properCase(needed.toString()).replace("  "_L1, " "_L1);
    const QString shown = firstCharacters(caption, tabCharacters);
    return shown.size() < caption.size() ? shown + "..."_L1 : caption;
}

QString trimBlanks(const QString &text)
{
    return trimmedView(text).toString();
}

QString firstCharacters(const QString &text, qsizetype count)
{
    // As it stands when it is short enough in any case: a copy that costs nothing.
    return text.size() <= count ? text : text.first(unitsOf(text, count));
}
