#pragma once

#include <QString>
#include <QVariant>
#include <array>

/// The colours of source text and the rich text document that carries them.
namespace HtmlColouring {

enum Slot { PlainText, Tag, AttributeName, AttributeValue, Comment };
inline constexpr int slotCount = 5;
/// One colour per slot, 0x00BBGGRR.
inline constexpr std::array<int, slotCount> defaultColours = {0x000000, 0xFF0000, 0x800000,
                                                              0x800080, 0xFF00FF};

/// The colour table's entry for a 32-bit integer 0x00BBGGRR or a text ending in "RRGGBB".
/// Any other type is a mistake in the program and ends it.
QString rtfColour(const QVariant &Color);

/// `text` with every match of the expression `pattern`, whatever its case, replaced by
/// `replacement`, in which $1 to $99, $&, $`, $' and $$ have their meaning. An expression that is
/// none leaves the text as it is. Time may grow with the square of the text on expressions that
/// allow it.
QString replaceText(const QString &pattern, const QString &replacement, const QString &text);

/// What a document begins with, up to the text itself.
QString documentHead(const std::array<int, slotCount> &colours = defaultColours);
QString documentHead(const QString &colourTable);
/// What it ends with; it stands for no line of the text.
QStringView documentTail();

/// The coloured document of `text`, between two documents of what stands before and after it
/// (empty for none). The same, character for character, as four replacements in turn would give
/// it, but in one pass whose time grows with the text's length alone.
QString colouredDocument(QStringView text, const QString &before = {}, const QString &after = {});

}
