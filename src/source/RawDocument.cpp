#include "RawDocument.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace {

constexpr int standsFor = QTextFormat::UserProperty;

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
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    qsizetype done = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (!isReserved(text[at]))
            continue;
        cursor.insertText(text.sliced(done, at - done).toString(), QTextCharFormat());
        QTextCharFormat format;
        format.setProperty(standsFor, int(text[at].unicode()));
        cursor.insertText(QString(QChar::ReplacementCharacter), format);
        done = at + 1;
    }
    cursor.insertText(text.sliced(done).toString(), QTextCharFormat());
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
