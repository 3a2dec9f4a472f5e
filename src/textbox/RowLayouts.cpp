#include "RowLayouts.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace {

/// Rows that are kept: some screens full.
constexpr size_t mostRows = 1000;
/// Room for a line that is not wrapped.
constexpr qreal endless = 10'000'000;

}

RowLayouts::RowLayouts(const ColouredBuffer &buffer, const TextRows &rows)
    : m_buffer(buffer)
    , m_rows(rows)
{
}

void RowLayouts::setForm(const QFont &font, qreal width, qreal tabDistance)
{
    clear();
    m_font = font;
    // Laying out takes half the time without shaping, and letters that stand alone look the same.
    m_unshaped = font;
    m_unshaped.setStyleStrategy(
        QFont::StyleStrategy(font.styleStrategy() | QFont::PreferNoShaping));
    m_width = width;
    m_option.setWrapMode(width > 0 ? QTextOption::WrapAtWordBoundaryOrAnywhere
                                   : QTextOption::NoWrap);
    m_option.setTabStopDistance(tabDistance);
    m_option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    const QFontMetricsF metrics(font);
    m_lineHeight = qMax(1, int(std::ceil(metrics.height())));
    m_ascent = std::ceil(metrics.ascent());
    m_widest = 0;
}

void RowLayouts::clear()
{
    m_made.clear();
}

void RowLayouts::changed(const TextRows::Change &change)
{
    const int shift = change.after - change.before;
    std::unordered_map<int, std::unique_ptr<QTextLayout>> kept;
    for (auto &[row, layout] : m_made) {
        if (row < change.first)
            kept.emplace(row, std::move(layout));
        else if (row >= change.first + change.before)
            kept.emplace(row + shift, std::move(layout));
    }
    m_made = std::move(kept);
}

void RowLayouts::setComposed(qsizetype at, const QString &text,
                             const QList<QTextLayout::FormatRange> &look)
{
    if (text.isEmpty() && m_composed.isEmpty())
        return;
    if (!m_composed.isEmpty())
        m_made.erase(m_rows.rowAt(qMin(m_composedAt, m_buffer.size())));
    m_composedAt = at;
    m_composed = text;
    m_look = look;
    m_made.erase(m_rows.rowAt(at));
}

bool RowLayouts::isComposing(int row) const
{
    return !m_composed.isEmpty() && row == m_rows.rowAt(m_composedAt);
}

QTextLayout &RowLayouts::at(int row)
{
    const auto found = m_made.find(row);
    if (found != m_made.end())
        return *found->second;
    if (m_made.size() >= mostRows)
        m_made.clear();
    return *m_made.emplace(row, make(row)).first->second;
}

int RowLayouts::lineCount(int row)
{
    if (m_width == 0 && m_made.count(row) == 0) {
        const qsizetype start = m_rows.start(row);
        const QStringView text =
            QStringView(m_buffer.text()).sliced(start, m_rows.end(row) - start);
        if (!text.contains(QChar(QChar::LineSeparator))
            && !text.contains(QChar(QChar::ParagraphSeparator)))
            return 1;
    }
    return at(row).lineCount();
}

std::unique_ptr<QTextLayout> RowLayouts::make(int row)
{
    const qsizetype start = m_rows.start(row);
    const QString text = m_buffer.text().mid(start, m_rows.end(row) - start);
    const bool alone =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c < firstCombining; });
    auto layout = std::make_unique<QTextLayout>(text, alone ? m_unshaped : m_font);
    layout->setCacheEnabled(true);
    layout->setTextOption(m_option);
    if (isComposing(row)) {
        layout->setPreeditArea(int(m_composedAt - start), m_composed);
        layout->setFormats(m_look);
    }
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(m_width > 0 ? m_width : endless);
        line.setPosition(
            QPointF(0, line.lineNumber() * m_lineHeight + m_ascent - std::ceil(line.ascent())));
        m_widest = qMax(m_widest, line.naturalTextWidth());
    }
    layout->endLayout();
    return layout;
}
