#pragma once

#include <QStringView>

/// Two corrections to text that the tag and attribute colours have gone over. Each finds, from
/// `from` on, the next match of its expression, in time that over all calls grows with the text's
/// length alone.
namespace HtmlFixups {

struct Range {
    qsizetype start = -1;
    qsizetype end = -1;
    bool found() const { return start >= 0; }
};

/// ">[^<]*=[^>]*<": plain text between tags that holds an "=". The whole match; the text is
/// without its first and last character.
Range nextPlainText(QStringView text, qsizetype from);

/// "<!--[\w\W]+?-->": a comment.
Range nextComment(QStringView text, qsizetype from);

}
