#include "FlowRows.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

FlowRows::~FlowRows()
{
    qDeleteAll(m_items);
}

QLayoutItem *FlowRows::takeAt(int index)
{
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int FlowRows::heightForWidth(int width) const
{
    return arrange(QRect(0, 0, width, 0), false);
}

/// All in one row.
QSize FlowRows::sizeHint() const
{
    QSize size;
    for (const QLayoutItem *item : m_items) {
        const QSize each = item->sizeHint();
        size =
            QSize(size.width() + each.width() + spacing(), std::max(size.height(), each.height()));
    }
    return size;
}

QSize FlowRows::minimumSize() const
{
    QSize size;
    for (const QLayoutItem *item : m_items)
        size = size.expandedTo(item->minimumSize());
    return size;
}

void FlowRows::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int FlowRows::arrange(const QRect &rect, bool isPlacing) const
{
    const bool isLeftward = parentWidget() && parentWidget()->isRightToLeft();
    int x = 0;
    int y = 0;
    int rowHeight = 0;
    for (QLayoutItem *item : m_items) {
        const QSize size = item->sizeHint();
        if (x > 0 && x + size.width() > rect.width()) {
            x = 0;
            y += rowHeight + spacing();
            rowHeight = 0;
        }
        if (isPlacing) {
            const QRect place(rect.topLeft() + QPoint(x, y), size);
            item->setGeometry(
                QStyle::visualRect(isLeftward ? Qt::RightToLeft : Qt::LeftToRight, rect, place));
        }
        x += size.width() + spacing();
        rowHeight = std::max(rowHeight, size.height());
    }
    return y + rowHeight;
}
