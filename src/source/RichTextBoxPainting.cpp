#include "RichTextBox.h"

#include <QGlyphRun>
#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextLayout>

namespace {

using Selections = QList<QAbstractTextDocumentLayout::Selection>;

QColor shownColour(int colour)
{
    return QColor(colour & 0xff, colour >> 8 & 0xff, colour >> 16 & 0xff);
}

/// Draws one line of a block, each run of equal colour with a pen of its own.
class LinePainter {
public:
    LinePainter(QPainter &painter, const QTextBlock &block, QPointF origin,
                const ColouredBuffer &buffer, const Selections &selections)
        : m_painter(painter)
        , m_block(block)
        , m_origin(origin)
        , m_buffer(buffer)
        , m_selections(selections)
    {
    }

    void draw(const QTextLine &line, const QRectF &clip)
    {
        // Lines that are not wrapped may be far longer than what is seen of them.
        const int start = line.textStart();
        const int end = start + line.textLength();
        const int margin = 2;
        int from = start;
        int to = end;
        if (line.naturalTextWidth() > 2 * clip.width()) {
            from = qMax(start, line.xToCursor(clip.left() - m_origin.x()) - margin);
            to = qMin(end, line.xToCursor(clip.right() - m_origin.x()) + margin);
        }
        for (const auto &selection : m_selections)
            drawBackground(line, selection);
        while (from < to) {
            const int runEnd = endOfRun(from, to);
            m_painter.setPen(colourAt(from));
            for (const QGlyphRun &run : line.glyphRuns(from, runEnd - from))
                m_painter.drawGlyphRun(m_origin, run);
            from = runEnd;
        }
    }

private:
    void drawBackground(const QTextLine &line, const QAbstractTextDocumentLayout::Selection &part)
    {
        const int start = line.textStart();
        const int end = start + line.textLength();
        const int from = part.cursor.selectionStart() - m_block.position();
        const int to = part.cursor.selectionEnd() - m_block.position();
        if (from > end || to <= start || part.format.background().style() == Qt::NoBrush)
            return;
        qreal left = line.cursorToX(qMax(from, start));
        qreal right = line.cursorToX(qMin(to, end));
        // A selected line break shows as a blank.
        if (to > end && from <= end && end == m_block.length() - 1)
            right += m_painter.fontMetrics().horizontalAdvance(u' ');
        if (left > right)
            std::swap(left, right);
        m_painter.fillRect(
            QRectF(m_origin.x() + left, m_origin.y() + line.y(), right - left, line.height()),
            part.format.background());
    }

    const QAbstractTextDocumentLayout::Selection *selectionAt(int at) const
    {
        const int position = m_block.position() + at;
        const QAbstractTextDocumentLayout::Selection *found = nullptr;
        for (const auto &selection : m_selections) {
            if (position >= selection.cursor.selectionStart()
                && position < selection.cursor.selectionEnd()
                && selection.format.foreground().style() != Qt::NoBrush)
                found = &selection;
        }
        return found;
    }

    int endOfRun(int from, int to) const
    {
        const QByteArray &colours = m_buffer.colours();
        const int base = m_block.position();
        const auto *selection = selectionAt(from);
        int end = from + 1;
        while (end < to && base + end < colours.size()
               && colours.at(base + end) == colours.at(base + from)
               && selectionAt(end) == selection)
            ++end;
        return end;
    }

    QColor colourAt(int at) const
    {
        if (const auto *selection = selectionAt(at))
            return selection->format.foreground().color();
        const qsizetype position = m_block.position() + at;
        return position < m_buffer.colours().size() ? shownColour(m_buffer.colourAt(position))
                                                    : QColor(Qt::black);
    }

    QPainter &m_painter;
    const QTextBlock &m_block;
    QPointF m_origin;
    const ColouredBuffer &m_buffer;
    const Selections &m_selections;
};

void drawBlock(QPainter &painter, const QTextBlock &block, QPointF origin, const QRectF &clip,
               const ColouredBuffer &buffer, const Selections &selections)
{
    QTextLayout *layout = block.layout();
    // While an input method composes, positions in the layout are not those of the text.
    if (!layout->preeditAreaText().isEmpty()) {
        layout->draw(&painter, origin, {}, clip);
        return;
    }
    LinePainter lines(painter, block, origin, buffer, selections);
    for (int i = 0; i < layout->lineCount(); ++i) {
        const QTextLine line = layout->lineAt(i);
        const qreal top = origin.y() + line.y();
        if (top + line.height() >= clip.top() && top <= clip.bottom())
            lines.draw(line, clip);
    }
}

}

void RichTextBox::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const QRectF clip = event->rect();
    painter.fillRect(clip, palette().base());
    const QAbstractTextDocumentLayout::PaintContext context = getPaintContext();
    QPointF origin = contentOffset();
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF area = blockBoundingRect(block).translated(origin);
        if (area.top() > viewport()->height())
            break;
        if (area.bottom() >= clip.top() && area.top() <= clip.bottom()) {
            drawBlock(painter, block, origin, clip, m_buffer, context.selections);
            if (block.contains(context.cursorPosition)) {
                painter.setPen(Qt::black);
                block.layout()->drawCursor(
                    &painter, origin, context.cursorPosition - block.position(), cursorWidth());
            }
        }
        origin.ry() += area.height();
    }
}
