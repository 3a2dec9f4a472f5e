#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// How the bytes of settings, list and language files become text and text becomes bytes. Bytes
/// that are valid UTF-8 (a byte order mark at the start is skipped) are UTF-8; any other bytes are
/// Windows-1252, whose five unassigned bytes stand for U+0081, U+008D, U+008F, U+0090 and U+009D,
/// so that every byte comes back as it was.
namespace TextEncoding {
enum class Encoding { Utf8, Utf8WithMark, Windows1252 };

/// Plain ASCII, and no bytes at all, are UTF-8.
Encoding detect(QByteArrayView bytes);

/// The text of a whole file, without its byte order mark.
QString decode(QByteArrayView bytes);
/// The text of a part of a file that `detect` was asked about; no mark is looked for.
QString decodePart(QByteArrayView bytes, Encoding encoding);

/// The bytes of `text` in that encoding, without a mark; nothing when a character has none there.
/// Half a surrogate pair becomes U+FFFD in UTF-8.
std::optional<QByteArray> encodePart(QStringView text, Encoding encoding);

/// The bytes of a whole file (a mark included) in its own encoding, or in UTF-8 where that cannot
/// hold the text or `decode` would read something else back.
QByteArray encode(QStringView text, Encoding own);

/// UTF-8's byte order mark.
QByteArrayView mark();
bool isAscii(QByteArrayView bytes);
}
