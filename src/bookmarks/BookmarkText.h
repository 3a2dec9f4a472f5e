#pragma once

#include <QByteArray>
#include <QString>

/// Texts of a bookmark file.
namespace BookmarkText {
/// UTF-8, or Windows-1252 where the bytes are none.
QString decode(QByteArrayView bytes);

/// With its character references resolved, as HTML has them: all names, the old ones also without
/// their semicolon, and numbers; what is no reference stays as it is. In an address only the few
/// that writers of bookmark files use are references, and only with their semicolon: `&copy=` is
/// part of a query there.
QString resolved(const QString &text, bool isAddress);

/// A title as one line: control characters and whatever stands around line breaks become one
/// blank, blanks at the ends go. Doing it twice changes nothing.
QString title(const QString &text);

/// An address without control characters and blanks at its ends.
QString address(const QString &text);

/// What stands for the title of a link that has none: its host, or its address.
QString titleOf(const QString &url);

/// Seconds since 1970 of a date in seconds, milliseconds or microseconds, the last ones also
/// since 1601; 0 for anything else.
qint64 date(QByteArrayView text);

/// In UTF-8, with the characters that mean something to HTML as references.
QByteArray escaped(const QString &text);
}
