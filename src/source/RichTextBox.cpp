#include "RichTextBox.h"

#include "DocumentFiller.h"
#include "LineEnds.h"
#include "RawDocument.h"
#include "Rtf.h"

#include <QScrollBar>
#include <QTextBlock>

using namespace Qt::StringLiterals;

namespace {

/// Characters that are shown at once, and per slice after that: a slice takes some ten
/// milliseconds.
constexpr qsizetype firstSlice = 100'000;
constexpr qsizetype laterSlice = 150'000;

}

QString RichTextBox::Text() const
{
    return LineEnds::fromLf(m_buffer.text());
}

int RichTextBox::TextLength() const
{
    return int(m_buffer.text().size() + m_buffer.text().count(u'\n'));
}

void RichTextBox::setText(const QString &text)
{
    ColouredText contents;
    contents.text = LineEnds::toLf(text);
    contents.colours = QByteArray(contents.text.size(), 0);
    setContents(contents);
}

void RichTextBox::setContents(const ColouredText &contents)
{
    m_fillTimer.stop();
    m_filler.reset();
    m_typing.reset();
    m_buffer.set(contents);
    m_caretAtEnd = false;
    m_ownChange = true;
    m_filler = std::make_unique<DocumentFiller>(document(), contents.text);
    const bool whole = m_filler->append(firstSlice);
    moveCursor(QTextCursor::Start);
    m_ownChange = false;
    if (whole)
        endFilling();
    else
        m_fillTimer.start(0, this);
    Q_EMIT changed();
}

void RichTextBox::fillSlice()
{
    m_ownChange = true;
    const bool whole = m_filler->append(laterSlice);
    m_ownChange = false;
    const qsizetype done = m_filler->done();
    const qsizetype size = m_filler->size();
    if (whole)
        endFilling();
    Q_EMIT fillProgress(done, size);
}

void RichTextBox::endFilling()
{
    m_fillTimer.stop();
    m_filler.reset();
    if (m_caretAtEnd)
        setCaretAtEnd();
}

void RichTextBox::finishFilling()
{
    while (m_filler)
        fillSlice();
}

void RichTextBox::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_fillTimer.timerId() && m_filler)
        fillSlice();
    else
        QPlainTextEdit::timerEvent(event);
}

void RichTextBox::setCaretAtEnd()
{
    m_caretAtEnd = true;
    if (isFilling())
        return;
    const int top = verticalScrollBar()->value();
    const int left = horizontalScrollBar()->value();
    moveCursor(QTextCursor::End);
    verticalScrollBar()->setValue(top);
    horizontalScrollBar()->setValue(left);
}

qsizetype RichTextBox::toBuffer(int position) const
{
    // A line's start moves one further for each line before it.
    int first = 0;
    int last = document()->blockCount() - 1;
    while (first < last) {
        const int middle = (first + last + 1) / 2;
        if (document()->findBlockByNumber(middle).position() + middle <= position)
            first = middle;
        else
            last = middle - 1;
    }
    const QTextBlock block = document()->findBlockByNumber(first);
    return qBound(0, position - first, block.position() + block.length() - 1);
}

int RichTextBox::toPosition(qsizetype at) const
{
    return int(at) + document()->findBlock(int(at)).blockNumber();
}

qsizetype RichTextBox::caret() const
{
    return textCursor().position();
}

qsizetype RichTextBox::selectionStart() const
{
    return textCursor().selectionStart();
}

void RichTextBox::select(qsizetype anchor, qsizetype caret)
{
    QTextCursor cursor = textCursor();
    cursor.setPosition(int(anchor));
    cursor.setPosition(int(caret), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

int RichTextBox::SelStart() const
{
    if (isFilling() && m_caretAtEnd)
        return TextLength();
    return toPosition(selectionStart());
}

void RichTextBox::setSelStart(int position)
{
    m_caretAtEnd = false;
    if (position > 0)
        finishFilling();
    const qsizetype at = toBuffer(qMax(0, position));
    select(at, at);
}

int RichTextBox::SelLength() const
{
    if (isFilling() && m_caretAtEnd)
        return 0;
    return toPosition(textCursor().selectionEnd()) - toPosition(selectionStart());
}

void RichTextBox::setSelLength(int length)
{
    if (length <= 0 && isFilling())
        return;
    finishFilling();
    const qsizetype start = selectionStart();
    // The sum of two great numbers would be none.
    const qint64 end = qMin(qint64(toPosition(start)) + qMax(0, length), qint64(TextLength()));
    select(start, toBuffer(int(end)));
}

QString RichTextBox::SelText() const
{
    const QTextCursor cursor = textCursor();
    return LineEnds::fromLf(m_buffer.text().mid(cursor.selectionStart(),
                                                cursor.selectionEnd() - cursor.selectionStart()));
}

void RichTextBox::setSelText(const QString &text)
{
    finishFilling();
    insert(textCursor(), LineEnds::toLf(text));
}

void RichTextBox::insert(QTextCursor cursor, const QString &text)
{
    RawDocument::insert(cursor, text);
    setTextCursor(cursor);
    ensureCursorVisible();
}

void RichTextBox::type(QChar character)
{
    finishFilling();
    insert(textCursor(), QString(character));
}

int RichTextBox::SelColor() const
{
    const QTextCursor cursor = textCursor();
    if (cursor.hasSelection())
        return m_buffer.colourAt(cursor.selectionStart());
    return m_typing.value_or(m_buffer.typingColour(cursor.position()));
}

void RichTextBox::setSelColor(int colour)
{
    finishFilling();
    const QTextCursor cursor = textCursor();
    if (!cursor.hasSelection()) {
        m_typing = colour;
        return;
    }
    m_buffer.setColour(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart(),
                       colour);
    viewport()->update();
}

QString RichTextBox::SelRTF() const
{
    const QTextCursor cursor = textCursor();
    const int start = cursor.selectionStart();
    const int length = cursor.selectionEnd() - start;
    if (length == 0)
        return {};
    return Rtf::write(QStringView(m_buffer.text()).mid(start, length),
                      QByteArrayView(m_buffer.colours()).sliced(start, length), m_buffer.palette());
}

QString RichTextBox::TextRTF() const
{
    return Rtf::write(m_buffer.text(), m_buffer.colours(), m_buffer.palette());
}

void RichTextBox::setTextRTF(const QString &rtf)
{
    if (!Rtf::isRtf(rtf)) {
        setText(rtf);
        return;
    }
    const ColouredText contents = Rtf::read(rtf);
    if (contents.text != m_buffer.text()) {
        setContents(contents);
        return;
    }
    QByteArray colours = contents.colours;
    for (char &index : colours)
        index = m_buffer.indexOf(contents.palette.at(uchar(index)));
    setColours(0, colours);
}

void RichTextBox::clearColours()
{
    m_typing.reset();
    setColours(0, QByteArray(m_buffer.text().size(), 0));
}

void RichTextBox::setColours(qsizetype from, QByteArrayView colours)
{
    m_buffer.setColours(from, colours);
    viewport()->update();
}

void RichTextBox::documentChanged(int from, int removed, int added)
{
    Q_UNUSED(removed);
    if (m_ownChange)
        return;
    // A document counts the end mark of its last line as changed too, at times; what was taken
    // out follows from the lengths.
    const int length = document()->characterCount() - 1;
    const qsizetype in = qMin(added, length - from);
    const qsizetype out = m_buffer.text().size() + in - length;
    if (in == 0 && out == 0)
        return;
    const int colour = m_typing.value_or(m_buffer.typingColour(from));
    m_buffer.replace(from, out, RawDocument::read(document(), from, int(in)), colour);
    m_typing.reset();
    Q_EMIT changed();
}
