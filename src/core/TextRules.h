#pragma once

#include <QString>
#include <optional>

/// "True" and "False" in any case, or any number (nonzero is true); nothing else is a boolean.
std::optional<bool> textToBoolean(const QString &text);

/// A decimal number, blanks around it allowed; nothing when the text is none.
std::optional<double> textToNumber(const QString &text);

/// "True" or "False", as menu toggles store a boolean.
QString booleanText(bool value);

/// First letter of each word upper case, the rest lower. Only NUL, tab, line feed, vertical tab,
/// form feed, carriage return and blank start a word.
QString properCase(const QString &text);

/// The caption of a window's tab for a page title: trimmed of blanks, proper-cased, every pair of
/// blanks made one in a single pass, cut to 10 characters and "..." when longer.
QString tabCaption(const QString &title);

/// `text` without leading and trailing blanks (U+0020 only).
QString trimBlanks(const QString &text);
