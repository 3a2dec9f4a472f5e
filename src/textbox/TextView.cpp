#include "TextView.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

/// Blank to the left of the text.
constexpr int margin = 4;
/// Steps of the vertical scroll bar from one row to the next; a row's lines share them.
constexpr int stepsPerRow = 16;
constexpr int degreesPerNotch = 120;
/// The width of a tab in characters of the fixed font.
constexpr int tabCharacters = 8;
/// Copying a text of more characters is felt.
constexpr qsizetype longText = 100'000;

}

TextView::TextView(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    setAcceptDrops(true);
    connect(verticalScrollBar(), &QScrollBar::actionTriggered, this, &TextView::scrollBarAction);
    form();
}

void TextView::form()
{
    // What stands first stays first.
    const QTextLayout &top = m_layouts.at(m_top.row);
    const QTextLine line = top.lineAt(qMin(m_top.line, top.lineCount() - 1));
    const qsizetype first = m_rows.start(m_top.row) + line.textStart();
    const int wide = viewport()->width() - 2 * margin;
    m_layouts.setForm(font(), m_wrapping ? qMax(wide, lineHeight()) : 0,
                      fontMetrics().horizontalAdvance(u' ') * tabCharacters);
    m_top = placeOf(first);
    adjustScrollBars();
    viewport()->update();
    Q_EMIT viewChanged();
}

void TextView::setBuffer(const ColouredText &contents)
{
    m_buffer.set(contents);
    m_rows.set(m_buffer.text());
    m_layouts.clear();
    m_layouts.setComposed(0, {}, {});
    m_anchor = m_caret = 0;
    m_top = {0, 0};
    m_wantedX = -1;
    horizontalScrollBar()->setValue(0);
    form();
    makeRoomSoon();
    Q_EMIT selectionChanged();
}

void TextView::makeRoomSoon()
{
    if (m_buffer.size() > longText)
        m_makingRoom.start(0, this);
}

void TextView::replaceText(qsizetype at, qsizetype removed, const QString &inserted,
                           const QByteArray &colours)
{
    m_layouts.setComposed(0, {}, {});
    m_buffer.replace(at, removed, inserted, colours);
    const TextRows::Change change = m_rows.replaced(m_buffer.text(), at, removed, inserted.size());
    m_layouts.changed(change);
    // What is in view stays there when the edit is above it.
    if (m_top.row >= change.first + change.before)
        m_top.row += change.after - change.before;
    m_top.row = qBound(0, m_top.row, m_rows.count() - 1);
    m_anchor = qMin(m_anchor, m_buffer.size());
    m_caret = qMin(m_caret, m_buffer.size());
    m_wantedX = -1;
    adjustScrollBars();
    if (inserted.size() > longText)
        makeRoomSoon();
    viewport()->update();
    Q_EMIT viewChanged();
}

void TextView::select(qsizetype anchor, qsizetype caret)
{
    anchor = qBound(qsizetype(0), anchor, m_buffer.size());
    caret = qBound(qsizetype(0), caret, m_buffer.size());
    m_wantedX = -1;
    showCaret();
    if (anchor == m_anchor && caret == m_caret)
        return;
    m_anchor = anchor;
    m_caret = caret;
    viewport()->update();
    Q_EMIT selectionChanged();
}

void TextView::setWrapping(bool wrapping)
{
    m_wrapping = wrapping;
    if (wrapping)
        horizontalScrollBar()->setValue(0);
    form();
    ensureCaretVisible();
}

void TextView::zoom(int steps)
{
    const qreal size = qBound(qreal(smallestFont), font().pointSizeF() + steps, qreal(largestFont));
    QFont larger = font();
    larger.setPointSizeF(size);
    setFont(larger);
}

void TextView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        form();
}

void TextView::resizeEvent(QResizeEvent *event)
{
    if (m_wrapping && event->oldSize().width() != event->size().width())
        form();
    else
        adjustScrollBars();
    Q_EMIT viewChanged();
}

qreal TextView::left() const
{
    return margin - horizontalScrollBar()->value();
}

int TextView::linesInView() const
{
    return qMax(1, viewport()->height() / lineHeight());
}

TextView::Place TextView::placeOf(qsizetype at) const
{
    const int row = m_rows.rowAt(at);
    const QTextLine line = m_layouts.at(row).lineForTextPosition(int(at - m_rows.start(row)));
    return {row, line.isValid() ? line.lineNumber() : 0};
}

TextView::Place TextView::moved(Place place, int lines) const
{
    while (lines < 0) {
        const int here = qMin(place.line, -lines);
        place.line -= here;
        lines += here;
        if (lines < 0) {
            if (place.row == 0)
                break;
            --place.row;
            place.line = m_layouts.lineCount(place.row) - 1;
            ++lines;
        }
    }
    while (lines > 0) {
        const int here = qMin(m_layouts.lineCount(place.row) - 1 - place.line, lines);
        place.line += here;
        lines -= here;
        if (lines > 0) {
            if (place.row + 1 == m_rows.count())
                break;
            ++place.row;
            place.line = 0;
            --lines;
        }
    }
    return place;
}

TextView::Place TextView::lowestTop() const
{
    const int last = m_rows.count() - 1;
    return moved({last, m_layouts.lineCount(last) - 1}, 1 - linesInView());
}

int TextView::scrollValue(Place place) const
{
    const int lines = place.line > 0 ? m_layouts.lineCount(place.row) : 1;
    return place.row * stepsPerRow + stepsPerRow * place.line / lines;
}

void TextView::adjustScrollBars()
{
    // A row may have become shorter.
    if (m_top.line > 0)
        m_top.line = qMin(m_top.line, m_layouts.lineCount(m_top.row) - 1);
    const Place lowest = lowestTop();
    if (m_top > lowest)
        m_top = lowest;
    QScrollBar *vertical = verticalScrollBar();
    vertical->setSingleStep(stepsPerRow);
    vertical->setPageStep(linesInView() * stepsPerRow);
    const int value = scrollValue(m_top);
    const bool wasBlocked = vertical->blockSignals(true);
    // The range covers the value at all times, or the bar would alter it.
    vertical->setMaximum(qMax(scrollValue(lowest), value));
    vertical->setValue(value);
    vertical->blockSignals(wasBlocked);
    // Signals tell the area whether the bar is to be shown.
    Q_EMIT vertical->rangeChanged(0, vertical->maximum());
    QScrollBar *horizontal = horizontalScrollBar();
    horizontal->setSingleStep(fontMetrics().horizontalAdvance(u'0') * 4);
    horizontal->setPageStep(viewport()->width());
    m_reachable = m_layouts.widest();
    horizontal->setMaximum(
        m_wrapping ? 0 : qMax(0, int(m_reachable) + 3 * margin - viewport()->width()));
}

void TextView::setTop(Place top)
{
    top = qMin(top, lowestTop());
    if (top == m_top)
        return;
    m_top = top;
    verticalScrollBar()->setMaximum(qMax(verticalScrollBar()->maximum(), scrollValue(top)));
    verticalScrollBar()->setValue(scrollValue(top));
    viewport()->update();
    Q_EMIT viewChanged();
}

void TextView::scrollBarMoved(int value)
{
    if (value == scrollValue(m_top))
        return;
    Place top{qBound(0, value / stepsPerRow, m_rows.count() - 1), 0};
    if (const int part = value % stepsPerRow)
        top.line = part * m_layouts.lineCount(top.row) / stepsPerRow;
    m_top = value >= verticalScrollBar()->maximum() ? lowestTop() : qMin(top, lowestTop());
    viewport()->update();
    Q_EMIT viewChanged();
}

/// Arrows and the page keys of the bar go by lines, not by the bar's own steps.
void TextView::scrollBarAction(int action)
{
    const int page = qMax(1, linesInView() - 1);
    int lines = 0;
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        lines = 1;
        break;
    case QAbstractSlider::SliderSingleStepSub:
        lines = -1;
        break;
    case QAbstractSlider::SliderPageStepAdd:
        lines = page;
        break;
    case QAbstractSlider::SliderPageStepSub:
        lines = -page;
        break;
    default:
        return;
    }
    setTop(moved(m_top, lines));
    verticalScrollBar()->setSliderPosition(scrollValue(m_top));
}

void TextView::scrollContentsBy(int dx, int dy)
{
    if (dy != 0)
        scrollBarMoved(verticalScrollBar()->value());
    if (dx != 0)
        viewport()->update();
}

void TextView::wheelEvent(QWheelEvent *event)
{
    const QPoint delta = event->angleDelta();
    if (event->modifiers() & Qt::ControlModifier) {
        if (delta.y() != 0)
            zoom(delta.y() > 0 ? 1 : -1);
    } else if (delta.y() != 0 && !(event->modifiers() & Qt::AltModifier)) {
        m_wheelRest -= delta.y() * QApplication::wheelScrollLines();
        setTop(moved(m_top, m_wheelRest / degreesPerNotch));
        m_wheelRest %= degreesPerNotch;
    } else {
        QCoreApplication::sendEvent(horizontalScrollBar(), event);
    }
    event->accept();
}

QList<TextView::VisibleRow> TextView::visibleRows() const
{
    QList<VisibleRow> visible;
    int top = -m_top.line * lineHeight();
    for (int row = m_top.row; row < m_rows.count() && top < viewport()->height(); ++row) {
        visible.append({row, top});
        top += m_layouts.lineCount(row) * lineHeight();
    }
    return visible;
}

QRect TextView::caretArea(qsizetype at) const
{
    const Place place = placeOf(at);
    const int relative = int(at - m_rows.start(place.row));
    const qreal x = m_layouts.at(place.row).lineAt(place.line).cursorToX(relative);
    int top = 0;
    if (place < m_top) {
        top = -lineHeight();
    } else {
        Place line{m_top.row, 0};
        top = -m_top.line * lineHeight();
        for (; line.row < place.row && top <= viewport()->height(); ++line.row)
            top += m_layouts.lineCount(line.row) * lineHeight();
        top += place.line * lineHeight();
    }
    return {qRound(left() + x), top, 1, lineHeight()};
}

qsizetype TextView::positionAt(QPoint point) const
{
    const int line = point.y() >= 0 ? point.y() / lineHeight() : -1;
    const Place place = moved(m_top, line);
    const Place last = moved(m_top, line - 1);
    if (line > 0 && place == last)
        return m_buffer.size();
    const QTextLine at = m_layouts.at(place.row).lineAt(place.line);
    return m_rows.start(place.row) + at.xToCursor(point.x() - left());
}

void TextView::ensureCaretVisible()
{
    const Place place = placeOf(m_caret);
    if (place < m_top) {
        setTop(place);
    } else if (place.row > m_top.row + linesInView() || place > moved(m_top, linesInView() - 1)) {
        setTop(moved(place, 1 - linesInView()));
    }
    adjustScrollBars();
    if (m_wrapping)
        return;
    const int x = caretArea(m_caret).left();
    QScrollBar *horizontal = horizontalScrollBar();
    const int room = viewport()->width();
    const int step = qMin(room / 3, 20 * fontMetrics().horizontalAdvance(u'0'));
    if (x < margin)
        horizontal->setValue(horizontal->value() + x - step);
    else if (x > room - margin)
        horizontal->setValue(horizontal->value() + x - room + step);
}

void TextView::centreCaret()
{
    const Place place = placeOf(m_caret);
    if (place < m_top || place > moved(m_top, linesInView() - 1))
        setTop(moved(place, -linesInView() / 2));
    ensureCaretVisible();
}
