#include "RichTextBox.h"

#include "LineEnds.h"
#include "Rtf.h"
#include "TextBoxAccessible.h"

#include <QFontDatabase>

namespace {

/// Source is read on white paper in every colour scheme: the colours of its kinds are fixed and
/// made for that.
QPalette paper(QPalette palette)
{
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(0x26, 0x5f, 0xb4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, Qt::darkGray);
    return palette;
}

}

RichTextBox::RichTextBox(QWidget *parent)
    : TextView(parent)
{
    TextBoxAccessible::install();
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    setFont(font);
    setPalette(paper(palette()));
    connect(this, &TextView::selectionChanged, this, [this] {
        m_typing.reset();
        m_run = Run::None;
        updateMicroFocus();
        TextBoxAccessible::moved(this);
    });
}

QString RichTextBox::text() const
{
    return LineEnds::fromLf(buffer().text());
}

int RichTextBox::textLength() const
{
    return int(buffer().size()) + rows().lineCount() - 1;
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
    m_history.clear();
    m_run = Run::None;
    const QString before = buffer().text();
    setBuffer(contents);
    m_typing.reset();
    TextBoxAccessible::changed(this, 0, before, contents.text);
    Q_EMIT changed();
}

qsizetype RichTextBox::toBuffer(int position) const
{
    // A line's start is one further for each line before it.
    int first = 0;
    int last = rows().count() - 1;
    while (first < last) {
        const int middle = first + (last - first + 1) / 2;
        if (rows().start(middle) + rows().lineOf(middle) <= position)
            first = middle;
        else
            last = middle - 1;
    }
    const qsizetype at = position - rows().lineOf(first);
    return qBound(qsizetype(0), at, rows().end(first));
}

int RichTextBox::toPosition(qsizetype at) const
{
    return int(at) + rows().lineOf(rows().rowAt(at));
}

int RichTextBox::selStart() const
{
    return toPosition(selectionStart());
}

void RichTextBox::setSelStart(int position)
{
    setCaret(toBuffer(qMax(0, position)));
}

void RichTextBox::setCaret(qsizetype at)
{
    select(at, at);
    ensureCaretVisible();
}

int RichTextBox::selLength() const
{
    return toPosition(selectionEnd()) - toPosition(selectionStart());
}

void RichTextBox::setSelLength(int length)
{
    const qsizetype start = selectionStart();
    // The sum of two great numbers would be none.
    const qint64 end = qMin(qint64(toPosition(start)) + qMax(0, length), qint64(textLength()));
    select(start, toBuffer(int(end)));
}

void RichTextBox::selectUnseen(int start, int length)
{
    select(toBuffer(start), toBuffer(start + length));
}

QString RichTextBox::selText() const
{
    return LineEnds::fromLf(plainSelection());
}

QString RichTextBox::plainSelection() const
{
    return buffer().text().mid(selectionStart(), selectionEnd() - selectionStart());
}

void RichTextBox::setSelText(const QString &text)
{
    insert(LineEnds::toLf(text));
}

EditHistory::Edit RichTextBox::put(qsizetype at, qsizetype length, const QString &text,
                                   const QByteArray &colours)
{
    const EditHistory::Edit edit{at, buffer().text().mid(at, length),
                                 buffer().colours().mid(at, length), text, colours};
    replaceText(at, length, text, colours);
    TextBoxAccessible::changed(this, at, edit.removed, text);
    return edit;
}

EditHistory::Edit RichTextBox::put(qsizetype at, qsizetype length, const QString &text)
{
    const char index = colourIndex(m_typing.value_or(buffer().typingColour(at)));
    return put(at, length, text, QByteArray(text.size(), index));
}

void RichTextBox::replace(qsizetype at, qsizetype length, const QString &text)
{
    edit(at, length, text, Run::None);
}

void RichTextBox::edit(qsizetype at, qsizetype length, const QString &text, Run run)
{
    if (length == 0 && text.isEmpty())
        return;
    const qsizetype anchorBefore = anchor();
    const qsizetype caretBefore = caret();
    const bool goesOn = run != Run::None && run == m_run;
    const EditHistory::Edit edit = put(at, length, text);
    if (!goesOn || !m_history.extend(edit))
        m_history.add({{edit}, anchorBefore, caretBefore});
    setCaret(at + text.size());
    m_typing.reset();
    m_run = run;
    Q_EMIT changed();
}

void RichTextBox::insert(const QString &text)
{
    replace(selectionStart(), selectionEnd() - selectionStart(), text);
}

void RichTextBox::type(const QString &text)
{
    edit(selectionStart(), selectionEnd() - selectionStart(), text, Run::Typing);
}

void RichTextBox::undo()
{
    if (!canUndo())
        return;
    m_run = Run::None;
    EditHistory::Step &step = m_history.undo();
    for (auto edit = step.edits.rbegin(); edit != step.edits.rend(); ++edit) {
        edit->insertedColours =
            put(edit->at, edit->inserted.size(), edit->removed, edit->removedColours)
                .removedColours;
    }
    select(step.anchor, step.caret);
    ensureCaretVisible();
    Q_EMIT changed();
}

void RichTextBox::redo()
{
    if (!canRedo())
        return;
    m_run = Run::None;
    EditHistory::Step &step = m_history.redo();
    for (EditHistory::Edit &edit : step.edits) {
        edit.removedColours =
            put(edit.at, edit.removed.size(), edit.inserted, edit.insertedColours).removedColours;
    }
    setCaret(step.edits.constLast().at + step.edits.constLast().inserted.size());
    Q_EMIT changed();
}

/// Moves the selected text to a place outside of it, as one step.
void RichTextBox::moveText(qsizetype to)
{
    const qsizetype from = selectionStart();
    const qsizetype length = selectionEnd() - from;
    const qsizetype anchorBefore = anchor();
    const qsizetype caretBefore = caret();
    const EditHistory::Edit out = put(from, length, {}, {});
    m_run = Run::None;
    const qsizetype at = to > from ? to - length : to;
    m_history.add({{out}, anchorBefore, caretBefore});
    m_history.join(put(at, 0, out.removed, out.removedColours));
    select(at, at + length);
    ensureCaretVisible();
    Q_EMIT changed();
}

int RichTextBox::selColor() const
{
    if (hasSelection())
        return buffer().colourAt(selectionStart());
    return m_typing.value_or(buffer().typingColour(caret()));
}

void RichTextBox::setSelColor(int colour)
{
    if (!hasSelection()) {
        m_typing = colour;
        return;
    }
    colouring().setColour(selectionStart(), selectionEnd() - selectionStart(), colour);
    viewport()->update();
}

QString RichTextBox::selRtf() const
{
    const qsizetype start = selectionStart();
    const qsizetype length = selectionEnd() - start;
    if (length == 0)
        return {};
    return Rtf::write(QStringView(buffer().text()).mid(start, length),
                      QByteArrayView(buffer().colours()).sliced(start, length), buffer().palette());
}

QString RichTextBox::textRtf() const
{
    return Rtf::write(buffer().text(), buffer().colours(), buffer().palette());
}

void RichTextBox::setTextRtf(const QString &rtf)
{
    if (!Rtf::isRtf(rtf)) {
        setText(rtf);
        return;
    }
    const ColouredText contents = Rtf::read(rtf);
    if (contents.text != buffer().text()) {
        setContents(contents);
        return;
    }
    QByteArray colours = contents.colours;
    for (char &index : colours)
        index = colourIndex(contents.palette.at(uchar(index)));
    setColours(0, colours);
}

void RichTextBox::clearColours()
{
    m_typing.reset();
    setColours(0, QByteArray(buffer().size(), 0));
}

void RichTextBox::setColours(qsizetype from, QByteArrayView colours)
{
    colouring().setColours(from, colours);
    viewport()->update();
}
