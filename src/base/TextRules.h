#pragma once

#include <QString>
#include <optional>

/// "True" and "False" in any case, or any number (nonzero is true), blanks around them allowed;
/// nothing else is a boolean.
std::optional<bool> textToBoolean(const QString &text);

/// A decimal number, blanks (U+0020) around it allowed: a sign, digits with a point, an exponent
/// ("-1.5e3", ".5", "5."). Nothing when the text is anything else (empty, hexadecimal, grouped,
/// with a comma, "inf", "nan", other scripts' digits) or too large.
std::optional<double> textToNumber(const QString &text);

/// "True" or "False", as menu toggles store a boolean.
QString booleanText(bool value);

/// First letter of each word upper case, the rest lower. Only NUL, tab, line feed, vertical tab,
/// form feed, carriage return and blank start a word. Each character becomes one character.
QString properCase(const QString &text);

/// The caption of a window's tab for a page title: trimmed of blanks, proper-cased, every pair of
/// blanks made one in a single pass, cut to 10 characters and "..." when longer. A surrogate pair
/// is one character.
QString tabCaption(const QString &title);

/// `text` without leading and trailing blanks (U+0020 only).
QString trimBlanks(const QString &text);

/// The first `count` characters of `text`, all when it has fewer. A surrogate pair is one.
QString firstCharacters(const QString &text, qsizetype count);
