#pragma once

#include <QString>

/// Text a user puts into a field of one line.
namespace TypedText {
/// `text` without line breaks and control characters: a run of blanks with a line break in it
/// becomes `lineBreak`, a tab a blank, everything else below U+0020 (and U+007F) goes;
/// characters that turn the direction are escaped as addresses escape them.
QString clean(const QString &text, const QString &lineBreak);
}
