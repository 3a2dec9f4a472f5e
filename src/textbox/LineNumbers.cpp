#include "LineNumbers.h"

#include "RichTextBox.h"

#include <QPaintEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {
constexpr int padding = 6;
constexpr int fewestDigits = 3;
/// Stands beside a row that goes on with the line above it.
const QString goesOn = u"\u2026"_s;
}

LineNumbers::LineNumbers(RichTextBox *box)
    : QWidget(box)
    , m_box(box)
{
    setObjectName("LineNumbers"_L1);
    connect(box, &TextView::viewChanged, this, &LineNumbers::place);
    box->installEventFilter(this);
    place();
}

bool LineNumbers::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::FontChange)
        place();
    return QWidget::eventFilter(watched, event);
}

void LineNumbers::place()
{
    const int digits = qMax(fewestDigits, int(QString::number(m_box->rows().lineCount()).size()));
    const int wide = m_box->fontMetrics().horizontalAdvance(u'9') * digits + 2 * padding;
    const QRect area = m_box->contentsRect();
    setGeometry(area.left(), area.top(), wide, area.height());
    m_box->setLeftMargin(wide);
    update();
}

void LineNumbers::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), QColor(0xf0, 0xf0, 0xf0));
    painter.setFont(m_box->font());
    const TextRows &rows = m_box->rows();
    for (const TextView::VisibleRow &shown : m_box->visibleRows()) {
        const QRect area(0, shown.top, width() - padding, m_box->lineHeight());
        if (rows.continues(shown.row)) {
            painter.setPen(QColor(0xa0, 0xa0, 0xa0));
            painter.drawText(area, Qt::AlignRight | Qt::AlignTop, goesOn);
        } else {
            painter.setPen(QColor(0x60, 0x60, 0x60));
            painter.drawText(area, Qt::AlignRight | Qt::AlignTop,
                             QString::number(rows.lineOf(shown.row) + 1));
        }
    }
}
