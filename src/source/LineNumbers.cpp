#include "LineNumbers.h"

#include "RichTextBox.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>

using namespace Qt::StringLiterals;

namespace {
constexpr int padding = 6;
constexpr int fewestDigits = 3;
}

LineNumbers::LineNumbers(RichTextBox *box)
    : QWidget(box)
    , m_box(box)
{
    setObjectName("LineNumbers"_L1);
    connect(box, &QPlainTextEdit::updateRequest, this, [this](const QRect &area, int scrolled) {
        if (scrolled)
            scroll(0, scrolled);
        else
            update(0, area.y(), width(), area.height());
    });
    connect(box, &QPlainTextEdit::blockCountChanged, this, &LineNumbers::place);
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
    const int digits =
        qMax(fewestDigits, int(QString::number(m_box->document()->blockCount()).size()));
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
    painter.setPen(QColor(0x60, 0x60, 0x60));
    painter.setFont(m_box->font());
    const QPointF offset = m_box->contentOffset();
    const int line = m_box->fontMetrics().height();
    for (QTextBlock block = m_box->firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF area = m_box->blockBoundingGeometry(block).translated(offset);
        if (area.top() > event->rect().bottom())
            break;
        if (area.bottom() >= event->rect().top())
            painter.drawText(QRectF(0, area.top(), width() - padding, line),
                             Qt::AlignRight | Qt::AlignTop,
                             QString::number(block.blockNumber() + 1));
    }
}
