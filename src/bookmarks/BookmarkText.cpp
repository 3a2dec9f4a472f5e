#include "BookmarkText.h"
#include "HtmlReferences.h"
#include "TextEncoding.h"

#include <QUrl>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {
// Digits of a number of a character, leading zeros among them, before it is none.
constexpr qsizetype longestNumber = 40;
// Without its "&".
constexpr qsizetype longestName = 32;
constexpr char32_t lastCharacter = 0x10ffff;

// What a text stands for after an "&", and how much of it that takes.
struct Reference {
    QString characters;
    qsizetype length = 0;
};

template <typename Kind> QStringView leading(QStringView text, qsizetype most, Kind isKind)
{
    const QStringView part = text.first(qMin(most, text.size()));
    const auto end = std::find_if_not(part.begin(), part.end(), isKind);
    return part.first(end - part.begin());
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isHexDigit(QChar c)
{
    return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool isNameCharacter(QChar c)
{
    return isDigit(c) || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// Numbers of the old code page stand for its characters; those of no character stay as they are.
QString numbered(uint number)
{
    if (number >= 0x80 && number <= 0x9f) {
        const char byte = static_cast<char>(number);
        return TextEncoding::decodePart(QByteArrayView(&byte, 1),
                                        TextEncoding::Encoding::Windows1252);
    }
    if (number == 0 || number > lastCharacter || QChar::isSurrogate(number))
        return {};
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(&number), 1);
}

std::optional<Reference> byNumber(QStringView text, bool needsSemicolon)
{
    const bool hex = text.startsWith(u'x') || text.startsWith(u'X');
    const qsizetype mark = hex ? 1 : 0;
    const QStringView digits =
        leading(text.sliced(mark), longestNumber, hex ? isHexDigit : isDigit);
    const qsizetype end = mark + digits.size();
    const bool closed = end < text.size() && text[end] == u';';
    bool good = false;
    const QString characters = numbered(digits.toUInt(&good, hex ? 16 : 10));
    if (!good || characters.isEmpty() || (needsSemicolon && !closed))
        return {};
    return Reference{characters, end + (closed ? 1 : 0)};
}

QStringView named(QStringView name)
{
    const auto table = htmlReferences();
    const auto found = std::ranges::lower_bound(table, name, {}, &HtmlReference::name);
    return found != table.end() && found->name == name ? found->text : QStringView();
}

// A name with its semicolon, or else the longest that needs none: "&copyright" begins with one.
std::optional<Reference> byName(QStringView text)
{
    const QStringView name = leading(text, longestName, isNameCharacter);
    if (name.size() < text.size() && text[name.size()] == u';') {
        const QStringView closed = text.first(name.size() + 1);
        if (const QStringView characters = named(closed); !characters.isEmpty())
            return Reference{characters.toString(), closed.size()};
    }
    for (qsizetype length = name.size(); length >= 2; --length) {
        if (const QStringView characters = named(name.first(length)); !characters.isEmpty())
            return Reference{characters.toString(), length};
    }
    return {};
}

// Those that writers of bookmark files use in addresses.
std::optional<Reference> byAddressName(QStringView text)
{
    for (const QStringView name :
         {u"amp;", u"lt;", u"gt;", u"quot;", u"apos;", u"AMP;", u"LT;", u"GT;", u"QUOT;"}) {
        if (text.startsWith(name))
            return Reference{named(name).toString(), name.size()};
    }
    return {};
}

// The reference that `text`, which follows an "&", begins with.
std::optional<Reference> reference(QStringView text, bool isAddress)
{
    if (text.startsWith(u'#')) {
        std::optional<Reference> number = byNumber(text.sliced(1), isAddress);
        if (number)
            ++number->length;
        return number;
    }
    return isAddress ? byAddressName(text) : byName(text);
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
        const std::optional<Reference> found = reference(all.sliced(from + 1), isAddress);
        if (found)
            result += found->characters;
        else
            result += u'&';
        from += found ? found->length + 1 : 1;
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
