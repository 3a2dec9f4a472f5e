#pragma once

#include <QString>
#include <functional>

/// The text of a page, a title or a message, as it may be put beside the program's own words: one
/// line without control characters and without those that turn the direction of what follows, cut
/// to a length that any widget can paint.
QString shownText(const QString &text);

/// `text` with every character that is not seen, or changes the order of others, written out as
/// "\uXXXX"; for text that must be recognised as what it is.
QString escapedText(const QString &text);

/// Whether `character` is not seen or changes the order of others: control and direction
/// characters, separators, and what is drawn as nothing.
bool isUnseen(char32_t character);

/// `text` with words that no short line holds made to go on in the next one, at any letter: but for
/// those of which `fits` says that they need not.
QString breakableText(const QString &text, const std::function<bool(const QString &word)> &fits);
