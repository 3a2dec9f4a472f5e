#pragma once

#include <QString>

class QRegularExpression;

/// Replacing by regular expression as scripts of web pages know it.
namespace RegExpText {
/// `text` with every match replaced. In `replacement`, $1 to $99 are groups the expression has
/// (any other number stands for itself), $& the match, $` and $' what stands before and after it,
/// $$ a dollar sign; nothing in `text` itself is expanded. Halves of surrogate pairs are
/// characters like others.
QString replaceAll(const QRegularExpression &expression, const QString &replacement,
                   const QString &text);
}
