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
    const int height = sizeHint().height();
    int x = 0;
    int y = 0;
    for (QLayoutItem *item : m_items) {
        const int width = item->sizeHint().width();
        if (x > 0 && x + width > rect.width()) {
            x = 0;
            y += height + spacing();
        }
        if (isPlacing) {
            const QRect place(rect.topLeft() + QPoint(x, y), QSize(width, height));
            item->setGeometry(
                QStyle::visualRect(isLeftward ? Qt::RightToLeft : Qt::LeftToRight, rect, place));
        }
        x += width + spacing();
    }
    return y + height;
}
