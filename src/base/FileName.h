#pragma once

#include <QString>
#include <functional>

/// Names from outside (titles, servers, addresses) made into names of files, without a folder.
namespace FileName {
/// What file systems take, in bytes of UTF-8.
inline constexpr qsizetype longest = 255;

/// `text` as a name that every file system takes and that shows as what it is: no path, no control
/// characters, none that turn the direction of writing or cannot be seen, no dots and blanks at
/// the ends, no device of another desktop. The name ends in `ending` (".html"), or where that is
/// empty in the text's own ending. What is longer than `limit` bytes is cut before the ending, not
/// within a character. Where nothing is left of the text it is `otherwise`.
QString from(const QString &text, const QString &ending, const QString &otherwise,
             qsizetype limit = longest);

/// Whether `name` can be a file's as it is: what `from` makes is one, at a hundredth of the time.
bool isFit(const QString &name);

/// The name's ending with its dot, as ".html" or ".tar.gz"; empty where there is none. What comes
/// after a dot in a sentence is none.
QString endingOf(const QString &name);

/// `name` with a number before its ending, "Page (2).html", cut like any other.
QString numbered(const QString &name, int number, qsizetype limit = longest);

/// `name`, or numbered from `first` the first that is not taken.
QString firstFree(const QString &name, int first,
                  const std::function<bool(const QString &)> &isTaken, qsizetype limit = longest);

/// `text` without the characters that no name shows: controls, marks of direction and such. Line
/// ends and tabs become blanks.
QString visible(const QString &text);
/// True for a name that another desktop keeps for a device, with any extension.
bool isDevice(const QString &name);
/// The first characters of `name`, as many whole ones as `limit` bytes hold.
QString cut(const QString &name, qsizetype limit);
}
