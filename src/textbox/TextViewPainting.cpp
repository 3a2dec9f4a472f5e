#include "TextView.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QGlyphRun>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <QTimerEvent>
#include <algorithm>

namespace {

QColor shownColour(int colour)
{
    return QColor(colour & 0xff, colour >> 8 & 0xff, colour >> 16 & 0xff);
}

/// Painting that takes longer goes on in a turn of its own.
constexpr int paintMilliseconds = 40;
/// Characters beside what is seen of a line that are drawn with it: a glyph may lean out.
constexpr int overhang = 2;

/// Draws lines of one row, each run of equal colour with a pen of its own.
class LinePainter {
public:
    LinePainter(QPainter &painter, const TextView &view, int row, QPointF origin)
        : m_painter(painter)
        , m_buffer(view.buffer())
        , m_palette(view.palette())
        , m_origin(origin)
        , m_start(view.rows().start(row))
        , m_selectionStart(view.selectionStart())
        , m_selectionEnd(view.selectionEnd())
        , m_endsLine(row + 1 == view.rows().count() || !view.rows().continues(row + 1))
    {
    }

    void draw(const QTextLayout &layout, const QTextLine &line, const QRectF &clip)
    {
        // Lines that are not wrapped may be far longer than what is seen of them.
        int from = line.textStart();
        int to = from + line.textLength();
        drawSelection(layout, line);
        if (line.naturalTextWidth() > 2 * clip.width()) {
            // Text that runs to the left begins at the right.
            const auto [first, last] = std::minmax({line.xToCursor(clip.left() - m_origin.x()),
                                                    line.xToCursor(clip.right() - m_origin.x())});
            from = qMax(from, first - overhang);
            to = qMin(to, last + overhang);
        }
        if (drawSimply(line, from, to))
            return;
        while (from < to) {
            const int end = endOfRun(from, to);
            m_painter.setPen(colourAt(from));
            for (const QGlyphRun &run : line.glyphRuns(from, end - from))
                m_painter.drawGlyphRun(m_origin, run);
            from = end;
        }
    }

private:
    /// Where each character is one glyph, all glyphs are asked for at once: each asking costs as
    /// much as the line is long. False when the line is not like that.
    bool drawSimply(const QTextLine &line, int from, int to)
    {
        const QStringView text = QStringView(m_buffer.text()).sliced(m_start + from, to - from);
        const bool simple = std::all_of(text.begin(), text.end(), [](QChar c) {
            return c < RowLayouts::firstCombining && c.isPrint();
        });
        const QList<QGlyphRun> runs = simple ? line.glyphRuns(from, to - from) : QList<QGlyphRun>();
        if (runs.size() != 1 || runs.constFirst().glyphIndexes().size() != to - from)
            return false;
        const QList<quint32> glyphs = runs.constFirst().glyphIndexes();
        const QList<QPointF> places = runs.constFirst().positions();
        QGlyphRun part = runs.constFirst();
        for (int at = from; at < to;) {
            const int end = endOfRun(at, to);
            part.setRawData(glyphs.constData() + (at - from), places.constData() + (at - from),
                            end - at);
            m_painter.setPen(colourAt(at));
            m_painter.drawGlyphRun(m_origin, part);
            at = end;
        }
        return true;
    }

    bool isSelected(int at) const
    {
        return m_start + at >= m_selectionStart && m_start + at < m_selectionEnd;
    }

    void drawSelection(const QTextLayout &layout, const QTextLine &line)
    {
        const int start = line.textStart();
        const int end = start + line.textLength();
        const int from = int(qMax(m_selectionStart - m_start, qsizetype(start)));
        const int to = int(qMin(m_selectionEnd - m_start, qsizetype(end)));
        const bool isLast = line.lineNumber() == layout.lineCount() - 1;
        // A selected line break shows as a blank.
        const bool withBreak = isLast && m_endsLine && isSelected(end);
        if (from > to || (from == to && !withBreak))
            return;
        qreal left = line.cursorToX(from);
        qreal right = line.cursorToX(to);
        if (left > right)
            std::swap(left, right);
        if (withBreak)
            right += m_painter.fontMetrics().horizontalAdvance(u' ');
        m_painter.fillRect(
            QRectF(m_origin.x() + left, m_origin.y() + line.y(), right - left, line.height()),
            m_palette.highlight());
    }

    int endOfRun(int from, int to) const
    {
        const QByteArray &colours = m_buffer.colours();
        const bool selected = isSelected(from);
        int end = from + 1;
        while (end < to && colours.at(m_start + end) == colours.at(m_start + from)
               && isSelected(end) == selected)
            ++end;
        return end;
    }

    QColor colourAt(int at) const
    {
        return isSelected(at) ? m_palette.highlightedText().color()
                              : shownColour(m_buffer.colourAt(m_start + at));
    }

    QPainter &m_painter;
    const ColouredBuffer &m_buffer;
    const QPalette m_palette;
    QPointF m_origin;
    qsizetype m_start;
    qsizetype m_selectionStart;
    qsizetype m_selectionEnd;
    bool m_endsLine;
};

}

void TextView::paintRow(QPainter &painter, const VisibleRow &shown, const QRect &clip)
{
    const QTextLayout &layout = m_layouts.at(shown.row);
    const QPointF origin(left(), shown.top);
    // While an input method composes, positions in the layout are not those of the text.
    if (m_layouts.isComposing(shown.row)) {
        painter.setPen(palette().text().color());
        layout.draw(&painter, origin);
        return;
    }
    LinePainter lines(painter, *this, shown.row, origin);
    const int first = qMax(0, (clip.top() - shown.top) / lineHeight());
    const int last = qMin(layout.lineCount() - 1, (clip.bottom() - shown.top) / lineHeight());
    for (int i = first; i <= last; ++i)
        lines.draw(layout, layout.lineAt(i), clip);
}

void TextView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    painter.setFont(font());
    const QRect clip = event->rect();
    painter.fillRect(clip, palette().base());
    const QList<VisibleRow> visible = visibleRows();
    const QDeadlineTimer deadline(paintMilliseconds);
    for (qsizetype i = 0; i < visible.size(); ++i) {
        const int bottom = i + 1 < visible.size() ? visible[i + 1].top : viewport()->height();
        if (bottom <= clip.top() || visible[i].top > clip.bottom())
            continue;
        if (deadline.hasExpired() && !m_layouts.isMade(visible[i].row)) {
            // Rows that are hard to lay out, hundreds of them with small letters.
            const QRect rest = clip.intersected(QRect(clip.left(), visible[i].top, clip.width(),
                                                      viewport()->height() - visible[i].top));
            QTimer::singleShot(0, viewport(), [this, rest] { viewport()->update(rest); });
            break;
        }
        paintRow(painter, visible[i], clip);
    }
    // Rows seen for the first time may be wider than all before.
    if (m_layouts.widest() > m_reachable && !m_wrapping)
        QTimer::singleShot(0, this, &TextView::adjustScrollBars);
    if (m_caretShown && hasFocus())
        painter.fillRect(caretArea(m_caret), palette().text());
    if (m_dropPlace >= 0)
        painter.fillRect(caretArea(m_dropPlace), palette().text());
}

void TextView::setDropPlace(qsizetype at)
{
    m_dropPlace = at;
    viewport()->update();
}

void TextView::showCaret()
{
    m_caretShown = true;
    const int period = QApplication::cursorFlashTime();
    if (hasFocus() && period > 1)
        m_blink.start(period / 2, this);
    viewport()->update();
}

void TextView::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    showCaret();
}

void TextView::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    m_blink.stop();
    viewport()->update();
}

void TextView::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_blink.timerId()) {
        m_caretShown = !m_caretShown;
        viewport()->update(caretArea(m_caret));
    } else if (event->timerId() == m_makingRoom.timerId()) {
        m_makingRoom.stop();
        m_buffer.makeRoom();
    } else if (event->timerId() == m_tripleClick.timerId()) {
        m_tripleClick.stop();
    } else if (event->timerId() == m_scrolling.timerId()) {
        scrollWhileSelecting();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}
