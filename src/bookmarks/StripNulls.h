#pragma once

#include <QChar>

/// The part of a text before its first NUL, or all of it: for a `QString`, or for a view of one,
/// which then stays a view.
template <typename Text> Text stripNulls(const Text &text)
{
    const qsizetype end = text.indexOf(QChar(u'\0'));
    return end < 0 ? text : text.first(end);
}
