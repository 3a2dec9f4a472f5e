#include "HtmlTyping.h"

#include "HtmlColouring.h"
#include "RichTextBox.h"

using namespace Qt::StringLiterals;
using HtmlColouring::defaultColours;

namespace {

/// The last place of one of two characters; -1 for none. Looks at many at once: there may be
/// millions before the caret.
qsizetype lastOf(QStringView text, char16_t one, char16_t other)
{
    constexpr qsizetype width = 256;
    const char16_t *units = text.utf16();
    qsizetype end = text.size();
    for (; end >= width; end -= width) {
        char16_t found = 0;
        for (qsizetype i = end - width; i < end; ++i)
            found |= char16_t((units[i] == one) | (units[i] == other));
        if (found != 0)
            break;
    }
    while (end > 0 && units[end - 1] != one && units[end - 1] != other)
        --end;
    return end - 1;
}

/// Puts a tab before the selection and after each of its line breaks, and selects it again.
void indent(RichTextBox &box)
{
    const int start = box.selStart();
    const QString text = u'\t' + box.selText().replace("\r\n"_L1, "\r\n\t"_L1);
    box.setSelText(text);
    box.setSelStart(start);
    box.setSelLength(int(text.size()));
}

/// The third character of a comment's opener makes the three a comment.
void colourOpener(RichTextBox &box)
{
    constexpr int length = 3;
    const qsizetype caret = box.caret();
    if (caret < length || box.buffer().text().sliced(caret - length, length) != "<!-"_L1)
        return;
    const char index = box.colourIndex(defaultColours[HtmlColouring::Comment]);
    box.setColours(caret - length, QByteArray(length, index));
}

bool pressInTag(RichTextBox &box, QStringView before, QChar character)
{
    switch (character.unicode()) {
    case u'-':
        colourOpener(box);
        return false;
    case u' ':
        box.setSelColor(
            defaultColours[HtmlTyping::insideValue(before) ? HtmlColouring::AttributeValue
                                                           : HtmlColouring::AttributeName]);
        return false;
    case u'=':
        box.type(QString(character));
        box.setSelColor(defaultColours[HtmlColouring::AttributeValue]);
        return true;
    case u'>':
        box.setSelColor(defaultColours[HtmlColouring::Tag]);
        box.type(QString(character));
        box.setSelColor(defaultColours[HtmlColouring::PlainText]);
        return true;
    default:
        return false;
    }
}

}

namespace HtmlTyping {

bool insideComment(QStringView before)
{
    for (qsizetype i = lastOf(before, u'-', u'-'); i >= 1; i = lastOf(before.left(i), u'-', u'-')) {
        if (before[i - 1] != u'-')
            continue;
        if (i + 1 < before.size() && before[i + 1] == u'>')
            return false;
        if (i >= 3 && before[i - 2] == u'!' && before[i - 3] == u'<')
            return true;
    }
    return false;
}

bool insideTag(QStringView before)
{
    const qsizetype at = lastOf(before, u'<', u'>');
    return at >= 0 && before[at] == u'<';
}

bool insideValue(QStringView before)
{
    int quotes = 0;
    for (qsizetype i = before.size() - 1; i >= 0 && before[i] != u'<'; --i) {
        if (before[i] == u'"')
            ++quotes;
        // An "=" inside the value, as in an address, has no quote right after it.
        else if (before[i] == u'=' && quotes > 0)
            return quotes % 2 == 1;
    }
    return false;
}

bool press(RichTextBox &box, QChar character)
{
    // Typing ">" turns to black before anything else is looked at, also inside a comment.
    if (character == u'>')
        box.setSelColor(0);
    if (character == u'\t') {
        if (box.selLength() == 0)
            return false;
        indent(box);
        return true;
    }
    // Most characters mean nothing: all that stands before the caret need not be looked at.
    if (!QStringView(u"<- =>").contains(character))
        return false;
    const QStringView before = QStringView(box.buffer().text()).left(box.selectionStart());
    if (insideComment(before))
        return false;
    if (character == u'<')
        box.setSelColor(defaultColours[HtmlColouring::Tag]);
    return insideTag(before) && pressInTag(box, before, character);
}

}
