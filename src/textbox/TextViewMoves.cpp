#include "TextMoves.h"
#include "TextView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <array>

namespace {

enum class Move {
    NextCharacter,
    PreviousCharacter,
    NextWord,
    PreviousWord,
    NextLine,
    PreviousLine,
    NextPage,
    PreviousPage,
    LineStart,
    LineEnd,
    BlockStart,
    BlockEnd,
    Start,
    End,
    All,
    None
};

struct MoveKey {
    QKeySequence::StandardKey key;
    Move move;
    bool selecting;
};

constexpr std::array moveKeys = {
    MoveKey{QKeySequence::MoveToNextChar, Move::NextCharacter, false},
    MoveKey{QKeySequence::MoveToPreviousChar, Move::PreviousCharacter, false},
    MoveKey{QKeySequence::MoveToNextWord, Move::NextWord, false},
    MoveKey{QKeySequence::MoveToPreviousWord, Move::PreviousWord, false},
    MoveKey{QKeySequence::MoveToNextLine, Move::NextLine, false},
    MoveKey{QKeySequence::MoveToPreviousLine, Move::PreviousLine, false},
    MoveKey{QKeySequence::MoveToNextPage, Move::NextPage, false},
    MoveKey{QKeySequence::MoveToPreviousPage, Move::PreviousPage, false},
    MoveKey{QKeySequence::MoveToStartOfLine, Move::LineStart, false},
    MoveKey{QKeySequence::MoveToEndOfLine, Move::LineEnd, false},
    MoveKey{QKeySequence::MoveToStartOfBlock, Move::BlockStart, false},
    MoveKey{QKeySequence::MoveToEndOfBlock, Move::BlockEnd, false},
    MoveKey{QKeySequence::MoveToStartOfDocument, Move::Start, false},
    MoveKey{QKeySequence::MoveToEndOfDocument, Move::End, false},
    MoveKey{QKeySequence::SelectNextChar, Move::NextCharacter, true},
    MoveKey{QKeySequence::SelectPreviousChar, Move::PreviousCharacter, true},
    MoveKey{QKeySequence::SelectNextWord, Move::NextWord, true},
    MoveKey{QKeySequence::SelectPreviousWord, Move::PreviousWord, true},
    MoveKey{QKeySequence::SelectNextLine, Move::NextLine, true},
    MoveKey{QKeySequence::SelectPreviousLine, Move::PreviousLine, true},
    MoveKey{QKeySequence::SelectNextPage, Move::NextPage, true},
    MoveKey{QKeySequence::SelectPreviousPage, Move::PreviousPage, true},
    MoveKey{QKeySequence::SelectStartOfLine, Move::LineStart, true},
    MoveKey{QKeySequence::SelectEndOfLine, Move::LineEnd, true},
    MoveKey{QKeySequence::SelectStartOfBlock, Move::BlockStart, true},
    MoveKey{QKeySequence::SelectEndOfBlock, Move::BlockEnd, true},
    MoveKey{QKeySequence::SelectStartOfDocument, Move::Start, true},
    MoveKey{QKeySequence::SelectEndOfDocument, Move::End, true},
    MoveKey{QKeySequence::SelectAll, Move::All, true},
};

MoveKey moveOf(const QKeyEvent *event)
{
    for (const MoveKey &one : moveKeys) {
        if (event->matches(one.key))
            return one;
    }
    return {QKeySequence::UnknownKey, Move::None, false};
}

/// How many lines on; 0 for a move that is none by lines.
int linesOf(Move move, int page)
{
    switch (move) {
    case Move::NextLine:
        return 1;
    case Move::PreviousLine:
        return -1;
    case Move::NextPage:
        return page;
    case Move::PreviousPage:
        return -page;
    default:
        return 0;
    }
}

/// Where a move leads that only the text decides.
qsizetype endOf(Move move, QStringView text, qsizetype from)
{
    switch (move) {
    case Move::NextCharacter:
        return TextMoves::nextCharacter(text, from);
    case Move::PreviousCharacter:
        return TextMoves::previousCharacter(text, from);
    case Move::NextWord:
        return TextMoves::nextWord(text, from);
    case Move::PreviousWord:
        return TextMoves::previousWord(text, from);
    case Move::BlockStart:
        return TextMoves::lineStart(text, from);
    case Move::BlockEnd:
        return TextMoves::lineEnd(text, from);
    case Move::Start:
        return 0;
    default:
        return text.size();
    }
}

constexpr int scrollMilliseconds = 50;

}

bool TextView::isMoveKey(const QKeyEvent *event)
{
    return moveOf(event).move != Move::None;
}

bool TextView::moveByKey(const QKeyEvent *event)
{
    const MoveKey key = moveOf(event);
    if (key.move == Move::None)
        return false;
    if (key.move == Move::All) {
        select(0, m_buffer.size());
        return true;
    }
    const int lines = linesOf(key.move, qMax(1, linesInView() - 1));
    const bool collapses = !key.selecting && hasSelection();
    qsizetype to = m_caret;
    if (lines != 0)
        to = lineMove(lines);
    else if (key.move == Move::LineStart)
        to = visualStart();
    else if (key.move == Move::LineEnd)
        to = visualEnd();
    else if (collapses && key.move == Move::NextCharacter)
        to = selectionEnd();
    else if (collapses && key.move == Move::PreviousCharacter)
        to = selectionStart();
    else
        to = endOf(key.move, m_buffer.text(), m_caret);
    const qreal wanted = lines == 0 ? -1 : m_wantedX;
    if (key.move == Move::NextPage || key.move == Move::PreviousPage)
        setTop(moved(m_top, lines));
    select(key.selecting ? m_anchor : to, to);
    m_wantedX = wanted;
    ensureCaretVisible();
    return true;
}

/// The place that many lines on, as near as it can be to where the moves began.
qsizetype TextView::lineMove(int lines)
{
    const Place from = placeOf(m_caret);
    const Place to = moved(from, lines);
    if (m_wantedX < 0) {
        const QTextLine line = m_layouts.at(from.row).lineAt(from.line);
        m_wantedX = line.cursorToX(int(m_caret - m_rows.start(from.row)));
    }
    if (from == to)
        return lines < 0 ? 0 : m_buffer.size();
    const QTextLine line = m_layouts.at(to.row).lineAt(to.line);
    const qsizetype at = m_rows.start(to.row) + line.xToCursor(m_wantedX);
    // Where a line goes on in a further one, its end is that one's start.
    return placeOf(at) > to ? TextMoves::previousCharacter(m_buffer.text(), at) : at;
}

qsizetype TextView::visualStart() const
{
    const Place place = placeOf(m_caret);
    return m_rows.start(place.row) + m_layouts.at(place.row).lineAt(place.line).textStart();
}

qsizetype TextView::visualEnd() const
{
    const Place place = placeOf(m_caret);
    const QTextLine line = m_layouts.at(place.row).lineAt(place.line);
    const qsizetype end = m_rows.start(place.row) + line.textStart() + line.textLength();
    return placeOf(end) > place ? TextMoves::previousCharacter(m_buffer.text(), end) : end;
}

bool TextView::isInSelection(QPoint point) const
{
    const qsizetype at = positionAt(point);
    return hasSelection() && at >= selectionStart() && at < selectionEnd();
}

void TextView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_pressed = event->pos();
    const qsizetype at = positionAt(event->pos());
    if (m_tripleClick.isActive()) {
        m_tripleClick.stop();
        m_unit = Unit::Line;
        m_unitStart = TextMoves::lineStart(m_buffer.text(), at);
        m_unitEnd = qMin(TextMoves::lineEnd(m_buffer.text(), at) + 1, m_buffer.size());
        m_selecting = true;
        select(m_unitStart, m_unitEnd);
        return;
    }
    m_unit = Unit::Character;
    const bool extend = event->modifiers() & Qt::ShiftModifier;
    m_mayDrag = !extend && isInSelection(event->pos());
    if (m_mayDrag)
        return;
    m_selecting = true;
    select(extend ? m_anchor : at, at);
    ensureCaretVisible();
}

void TextView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const qsizetype at = positionAt(event->pos());
    m_unit = Unit::Word;
    m_unitStart = TextMoves::wordStart(m_buffer.text(), at);
    m_unitEnd = TextMoves::wordEnd(m_buffer.text(), at);
    m_mayDrag = false;
    m_selecting = true;
    select(m_unitStart, m_unitEnd);
    m_tripleClick.start(QApplication::doubleClickInterval(), this);
}

void TextView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    if (m_mayDrag) {
        if ((event->pos() - m_pressed).manhattanLength() >= QApplication::startDragDistance()) {
            m_mayDrag = false;
            dragSelection();
        }
        return;
    }
    if (!m_selecting)
        return;
    selectUnit(positionAt(event->pos()));
    if (viewport()->rect().contains(event->pos()))
        m_scrolling.stop();
    else if (!m_scrolling.isActive())
        m_scrolling.start(scrollMilliseconds, this);
}

/// Extends the selection to a place, by whole words or lines where it began so.
void TextView::selectUnit(qsizetype at)
{
    const QStringView text = m_buffer.text();
    if (m_unit == Unit::Character)
        select(m_anchor, at);
    else if (at < m_unitStart)
        select(m_unitEnd,
               m_unit == Unit::Word ? TextMoves::wordStart(text, at)
                                    : TextMoves::lineStart(text, at));
    else if (at > m_unitEnd)
        select(m_unitStart,
               m_unit == Unit::Word ? TextMoves::wordEnd(text, at)
                                    : qMin(TextMoves::lineEnd(text, at) + 1, text.size()));
    else
        select(m_unitStart, m_unitEnd);
}

void TextView::scrollWhileSelecting()
{
    const QPoint point = viewport()->mapFromGlobal(QCursor::pos());
    const QRect area = viewport()->rect();
    if (point.y() < area.top() || point.y() > area.bottom()) {
        const int beyond = point.y() < area.top() ? point.y() : point.y() - area.bottom();
        const int lines = beyond / lineHeight();
        setTop(moved(m_top, lines == 0 ? (beyond < 0 ? -1 : 1) : lines));
    }
    const int advance = 2 * fontMetrics().horizontalAdvance(u'0');
    if (point.x() < area.left())
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - advance);
    else if (point.x() > area.right())
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + advance);
    selectUnit(positionAt(point));
}

void TextView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_scrolling.stop();
    m_selecting = false;
    // A press on the selection that dragged nothing was a click.
    if (m_mayDrag) {
        m_mayDrag = false;
        const qsizetype at = positionAt(event->pos());
        select(at, at);
    }
}
