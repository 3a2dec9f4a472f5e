#pragma once

#include <QStringView>

/// Places of a caret in a text with one line feed per line break.
namespace TextMoves {
/// What a user takes for one character may be several code units.
qsizetype nextCharacter(QStringView text, qsizetype at);
qsizetype previousCharacter(QStringView text, qsizetype at);
/// One code point back, so that a mark can be taken off its letter.
qsizetype previousCodePoint(QStringView text, qsizetype at);
/// The start of the next word, and of this or the one before. A line break is a word.
qsizetype nextWord(QStringView text, qsizetype at);
qsizetype previousWord(QStringView text, qsizetype at);
/// The ends of the word, the run of signs or the run of blanks at a place.
qsizetype wordStart(QStringView text, qsizetype at);
qsizetype wordEnd(QStringView text, qsizetype at);
qsizetype lineStart(QStringView text, qsizetype at);
/// The line's end, its break not included.
qsizetype lineEnd(QStringView text, qsizetype at);
}
