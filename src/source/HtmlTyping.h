#pragma once

#include <QString>

class RichTextBox;

/// Colours HTML while it is typed.
namespace HtmlTyping {
/// Deals with a character that is about to be typed; true when it needs no inserting any more.
bool press(RichTextBox &box, QChar character);

/// Where a position in HTML stands, judged from the text before it.
bool insideComment(QStringView before);
bool insideTag(QStringView before);
/// After an "=" whose double quote is still open.
bool insideValue(QStringView before);
}
