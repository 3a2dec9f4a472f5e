#include "ShownText.h"

#include <algorithm>
#include <unicode/uchar.h>

using namespace Qt::StringLiterals;

namespace {
/// UTF-16 units.
constexpr qsizetype longestShown = 4096;

/// Where a line breaks between any two letters anyhow, or where they are joined, nothing comes in
/// between.
bool mayStandApart(QChar letter)
{
    const QChar::Script script = letter.script();
    return letter.isDigit()
        || (letter.isLetter()
            && (script == QChar::Script_Latin || script == QChar::Script_Cyrillic
                || script == QChar::Script_Greek));
}

bool turnsDirection(char32_t c)
{
    return u_hasBinaryProperty(static_cast<UChar32>(c), UCHAR_BIDI_CONTROL);
}

bool breaksLine(char32_t c)
{
    constexpr uint32_t breaks = U_GC_CC_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK;
    return U_MASK(u_charType(static_cast<UChar32>(c))) & breaks;
}

/// Hands over each character; half a pair comes as what it is.
template <typename Take> void forEachCharacter(QStringView text, Take take)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text.at(at);
        const bool pair =
            unit.isHighSurrogate() && at + 1 < text.size() && text.at(at + 1).isLowSurrogate();
        take(pair ? QChar::surrogateToUcs4(unit, text.at(at + 1)) : char32_t(unit.unicode()),
             text.mid(at, pair ? 2 : 1));
        at += pair;
    }
}
}

bool isUnseen(char32_t character)
{
    const auto c = static_cast<UChar32>(character);
    return breaksLine(character) || turnsDirection(character)
        || u_hasBinaryProperty(c, UCHAR_DEFAULT_IGNORABLE_CODE_POINT)
        || (U_MASK(u_charType(c)) & (U_GC_CF_MASK | U_GC_CS_MASK | U_GC_CN_MASK | U_GC_CO_MASK));
}

QString shownText(const QString &text)
{
    QStringView part(text);
    if (part.size() > longestShown)
        part = part.first(part.at(longestShown - 1).isHighSurrogate() ? longestShown - 1
                                                                      : longestShown);
    QString result;
    result.reserve(part.size());
    forEachCharacter(part, [&result](char32_t c, QStringView units) {
        if (breaksLine(c))
            result += u' ';
        else if (!turnsDirection(c))
            result += units;
    });
    return result;
}

QString escapedText(const QString &text)
{
    QString result;
    result.reserve(text.size());
    forEachCharacter(text, [&result](char32_t c, QStringView units) {
        if (!isUnseen(c)) {
            result += units;
            return;
        }
        for (const QChar unit : units)
            result +=
                "\\u"_L1 + QString::number(unit.unicode(), 16).toUpper().rightJustified(4, u'0');
    });
    return result;
}

QString breakableText(const QString &text, const std::function<bool(const QString &word)> &fits)
{
    constexpr qsizetype longestWord = 24;
    constexpr QChar mayBreak(0x200b);
    const auto isSpace = [](QChar letter) { return letter.isSpace(); };
    QString result;
    for (auto at = text.begin(); at != text.end();) {
        const auto end = std::find_if(at, text.end(), isSpace);
        const bool isTooLong = end - at > longestWord && !fits(QString(at, end - at));
        for (; at != end; ++at) {
            if (isTooLong && mayStandApart(*at))
                result += mayBreak;
            result += *at;
        }
        if (at != text.end())
            result += *at++;
    }
    return result;
}
