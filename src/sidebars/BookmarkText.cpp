#include "BookmarkText.h"
#include "TextEncoding.h"

#include <QHash>
#include <QUrl>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {
// The longest name below, and the longest number of a character, with some room.
constexpr qsizetype longestReference = 10;
constexpr char32_t lastCharacter = 0x10ffff;

// The names of U+00A0 to U+00FF, in their order.
constexpr QLatin1StringView latinNames(
    "nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg macr deg plusmn "
    "sup2 sup3 acute micro para middot cedil sup1 ordm raquo frac14 frac12 frac34 iquest Agrave "
    "Aacute Acirc Atilde Auml Aring AElig Ccedil Egrave Eacute Ecirc Euml Igrave Iacute Icirc Iuml "
    "ETH Ntilde Ograve Oacute Ocirc Otilde Ouml times Oslash Ugrave Uacute Ucirc Uuml Yacute THORN "
    "szlig agrave aacute acirc atilde auml aring aelig ccedil egrave eacute ecirc euml igrave "
    "iacute icirc iuml eth ntilde ograve oacute ocirc otilde ouml divide oslash ugrave uacute "
    "ucirc uuml yacute thorn yuml");

QHash<QString, char32_t> basicNames()
{
    return {{u"amp"_s, U'&'},  {u"lt"_s, U'<'},    {u"gt"_s, U'>'},
            {u"quot"_s, U'"'}, {u"apos"_s, U'\''}, {u"AMP"_s, U'&'},
            {u"LT"_s, U'<'},   {u"GT"_s, U'>'},    {u"QUOT"_s, U'"'}};
}

QHash<QString, char32_t> allNames()
{
    QHash<QString, char32_t> names = basicNames();
    char32_t character = 0xa0;
    for (const QString &name : QString(latinNames).split(u' '))
        names.insert(name, character++);
    names.insert({{u"ndash"_s, 0x2013},
                  {u"mdash"_s, 0x2014},
                  {u"lsquo"_s, 0x2018},
                  {u"rsquo"_s, 0x2019},
                  {u"sbquo"_s, 0x201a},
                  {u"ldquo"_s, 0x201c},
                  {u"rdquo"_s, 0x201d},
                  {u"bdquo"_s, 0x201e},
                  {u"bull"_s, 0x2022},
                  {u"hellip"_s, 0x2026},
                  {u"lsaquo"_s, 0x2039},
                  {u"rsaquo"_s, 0x203a},
                  {u"euro"_s, 0x20ac},
                  {u"trade"_s, 0x2122}});
    return names;
}

std::optional<char32_t> numbered(QStringView digits)
{
    const bool hex = digits.startsWith(u'x') || digits.startsWith(u'X');
    bool good = false;
    const uint number = hex ? digits.sliced(1).toUInt(&good, 16) : digits.toUInt(&good);
    if (!good || number == 0 || number > lastCharacter || QChar::isSurrogate(number))
        return {};
    return number;
}

// What the reference between "&" and ";" stands for.
std::optional<char32_t> character(QStringView name, bool isAddress)
{
    static const QHash<QString, char32_t> basic = basicNames();
    static const QHash<QString, char32_t> all = allNames();
    if (name.startsWith(u'#'))
        return numbered(name.sliced(1));
    const QHash<QString, char32_t> &names = isAddress ? basic : all;
    const auto found = names.constFind(name.toString());
    return found == names.cend() ? std::nullopt : std::optional(*found);
}

// What is written for the character; nothing where it stands for itself.
const char *referenceTo(char character)
{
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return nullptr;
    }
}

bool isControl(QChar character)
{
    return character < u' ' || character == u'\x7f';
}
}

namespace BookmarkText {

QString decode(QByteArrayView bytes)
{
    return TextEncoding::decodePart(bytes, TextEncoding::detect(bytes));
}

QString resolved(const QString &text, bool isAddress)
{
    qsizetype from = text.indexOf(u'&');
    if (from < 0)
        return text;
    QString result = text.left(from);
    const QStringView all(text);
    while (from < text.size()) {
        const qsizetype end = all.mid(from, longestReference).indexOf(u';');
        const auto found =
            end > 1 ? character(all.sliced(from + 1, end - 1), isAddress) : std::nullopt;
        if (found)
            result += QChar::fromUcs4(*found);
        else
            result += u'&';
        from += found ? end + 1 : 1;
        qsizetype next = text.indexOf(u'&', from);
        if (next < 0)
            next = text.size();
        result += all.sliced(from, next - from);
        from = next;
    }
    return result;
}

QString title(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), isControl))
        return text.trimmed();
    QString result;
    result.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        qsizetype end = at;
        bool breaks = false;
        for (; end < text.size() && (text[end] == u' ' || isControl(text[end])); ++end)
            breaks |= text[end] != u' ';
        if (breaks)
            result += u' ';
        else
            result += QStringView(text).sliced(at, end - at);
        if (end < text.size())
            result += text[end];
        at = end + 1;
    }
    return result.trimmed();
}

QString address(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), isControl))
        return text.trimmed();
    QString result = text;
    result.removeIf(isControl);
    return result.trimmed();
}

QString titleOf(const QString &url)
{
    const QString host = QUrl(url).host();
    return title(host.isEmpty() ? url.left(200) : host);
}

qint64 date(QByteArrayView text)
{
    constexpr qint64 firstMs = 100'000'000'000;
    constexpr qint64 firstUs = 100'000'000'000'000;
    constexpr qint64 firstUsSince1601 = 10'000'000'000'000'000;
    constexpr qint64 secondsTo1970 = 11'644'473'600;
    bool good = false;
    const qint64 number = text.trimmed().toByteArray().toLongLong(&good);
    if (!good || number <= 0)
        return 0;
    if (number >= firstUsSince1601)
        return number / 1'000'000 - secondsTo1970;
    if (number >= firstUs)
        return number / 1'000'000;
    return number >= firstMs ? number / 1000 : number;
}

QByteArray escaped(const QString &text)
{
    const QByteArray plain = text.toUtf8();
    QByteArray result;
    qsizetype done = 0;
    for (qsizetype at = 0; at < plain.size(); ++at) {
        const char *reference = referenceTo(plain[at]);
        if (!reference)
            continue;
        result += QByteArrayView(plain).sliced(done, at - done);
        result += reference;
        done = at + 1;
    }
    return done == 0 ? plain : result += QByteArrayView(plain).sliced(done);
}

}
