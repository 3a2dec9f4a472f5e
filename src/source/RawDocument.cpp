#include "RawDocument.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace {

constexpr int standsFor = QTextFormat::UserProperty;

/// Characters from which on laying out a line is felt.
constexpr qsizetype longLine = 150'000;
/// The first of those that may join with a character before them.
constexpr QChar firstCombining(0x0300);

/// Laying out a line in a fixed font takes half the time without shaping, and one of these
/// letters alone looks the same.
QTextCharFormat formatFor(QStringView text)
{
    QTextCharFormat format;
    qsizetype longest = 0;
    qsizetype start = 0;
    while (start < text.size() && longest < longLine) {
        const qsizetype end = text.indexOf(u'\n', start);
        longest = std::max(longest, (end < 0 ? text.size() : end) - start);
        start = end < 0 ? text.size() : end + 1;
    }
    const auto standsAlone = [](QChar c) { return c < firstCombining; };
    if (longest >= longLine && std::all_of(text.begin(), text.end(), standsAlone))
        format.setFontStyleStrategy(QFont::PreferNoShaping);
    return format;
}

bool isReserved(QChar c)
{
    return c == QChar::ParagraphSeparator || c == QChar(0xfdd0) || c == QChar(0xfdd1);
}

QString blockText(const QTextBlock &block)
{
    QString text = block.text();
    if (!text.contains(QChar::ReplacementCharacter))
        return text;
    for (auto i = block.begin(); !i.atEnd(); ++i) {
        const QTextFragment fragment = i.fragment();
        if (!fragment.charFormat().hasProperty(standsFor))
            continue;
        const QChar original(char16_t(fragment.charFormat().intProperty(standsFor)));
        const int start = fragment.position() - block.position();
        for (int at = start; at < start + fragment.length(); ++at)
            text[at] = original;
    }
    return text;
}

}

namespace RawDocument {

void insert(QTextCursor &cursor, QStringView text)
{
    const QTextCharFormat plain = formatFor(text);
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    qsizetype done = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (!isReserved(text[at]))
            continue;
        cursor.insertText(text.sliced(done, at - done).toString(), plain);
        QTextCharFormat format;
        format.setProperty(standsFor, int(text[at].unicode()));
        cursor.insertText(QString(QChar::ReplacementCharacter), format);
        done = at + 1;
    }
    cursor.insertText(text.sliced(done).toString(), plain);
    cursor.endEditBlock();
}

QString read(const QTextDocument *document, int from, int length)
{
    QString text;
    text.reserve(length);
    QTextBlock block = document->findBlock(from);
    while (block.isValid() && text.size() < length) {
        const int skipped = qMax(0, from - block.position());
        text += QStringView(blockText(block)).sliced(skipped).left(length - text.size());
        if (text.size() < length)
            text += u'\n';
        block = block.next();
    }
    return text;
}

}
