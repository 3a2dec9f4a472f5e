#include "TextEncoding.h"

#include <QStringConverter>
#include <algorithm>
#include <array>

namespace {
// Windows-1252 from 0x80 to 0x9f; all other bytes are the character of the same number.
constexpr std::array<char16_t, 32> highControls = {
    0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008d, 0x017d, 0x008f, 0x0090, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178};

std::optional<char> byteOf(char16_t unit)
{
    if (unit < 0x80 || (unit >= 0xa0 && unit <= 0xff))
        return static_cast<char>(unit);
    const auto at = std::find(highControls.begin(), highControls.end(), unit);
    if (at == highControls.end())
        return {};
    return static_cast<char>(0x80 + (at - highControls.begin()));
}

QString fromWindows1252(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar *out = text.data();
    for (const char byte : bytes) {
        const auto code = static_cast<uchar>(byte);
        *out++ = QChar(code >= 0x80 && code <= 0x9f ? highControls[code - 0x80] : code);
    }
    return text;
}

std::optional<QByteArray> toWindows1252(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar character : text) {
        const std::optional<char> byte = byteOf(character.unicode());
        if (!byte)
            return {};
        bytes.append(*byte);
    }
    return bytes;
}
}

namespace TextEncoding {

QByteArrayView mark()
{
    return QByteArrayView("\xef\xbb\xbf", 3);
}

bool isAscii(QByteArrayView bytes)
{
    // Without an early end, so that many bytes are looked at in one step.
    unsigned char all = 0;
    for (const char byte : bytes)
        all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

Encoding detect(QByteArrayView bytes)
{
    if (!bytes.isValidUtf8())
        return Encoding::Windows1252;
    return bytes.startsWith(mark()) ? Encoding::Utf8WithMark : Encoding::Utf8;
}

QString decode(QByteArrayView bytes)
{
    const Encoding encoding = detect(bytes);
    const bool marked = encoding == Encoding::Utf8WithMark;
    return decodePart(marked ? bytes.sliced(mark().size()) : bytes, encoding);
}

QString decodePart(QByteArrayView bytes, Encoding encoding)
{
    if (encoding == Encoding::Windows1252)
        return fromWindows1252(bytes);
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return decoder(bytes);
}

std::optional<QByteArray> encodePart(QStringView text, Encoding encoding)
{
    if (encoding == Encoding::Windows1252)
        return toWindows1252(text);
    return text.toUtf8();
}

QByteArray encode(QStringView text, Encoding own)
{
    if (own == Encoding::Windows1252) {
        const std::optional<QByteArray> bytes = toWindows1252(text);
        // Characters of the old code page can by chance be valid UTF-8: "\u00c3\u00a9" is.
        if (bytes && (isAscii(*bytes) || detect(*bytes) == Encoding::Windows1252))
            return *bytes;
    }
    // A text's own leading U+FEFF needs a mark before it, or it would be read as the mark.
    const bool marked = own == Encoding::Utf8WithMark || text.startsWith(QChar(0xfeff));
    return marked ? mark().toByteArray() + text.toUtf8() : text.toUtf8();
}

}
