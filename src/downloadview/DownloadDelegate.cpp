#include "DownloadDelegate.h"

#include "DownloadModel.h"
#include "ElidedAddress.h"

#include <QApplication>
#include <QPainter>

namespace {

/// Around a bar in its cell.
constexpr int gap = 3;

QStyle *styleOf(const QStyleOptionViewItem &item)
{
    return item.widget ? item.widget->style() : QApplication::style();
}

void paintBar(QPainter *painter, const QStyleOptionViewItem &item, int share)
{
    QStyleOptionProgressBar bar;
    bar.initFrom(item.widget);
    bar.direction = item.direction;
    bar.fontMetrics = item.fontMetrics;
    bar.state = QStyle::State_Horizontal | (item.state & QStyle::State_Enabled);
    bar.rect = item.rect.adjusted(gap, gap, -gap, -gap);
    bar.minimum = 0;
    bar.maximum = 100;
    bar.progress = share;
    bar.text = item.text;
    bar.textVisible = true;
    bar.textAlignment = Qt::AlignCenter;
    styleOf(item)->drawControl(QStyle::CE_ProgressBar, &bar, painter, item.widget);
}

}

void DownloadDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    QStyle *style = styleOf(item);
    const bool isAddress =
        index.column() == DownloadModel::Address || index.column() == DownloadModel::Page;
    if (isAddress) {
        const QRect room = style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget);
        item.text =
            elidedAddress(item.text, item.fontMetrics, room.width() - 2 * gap, Qt::ElideRight);
    }
    const QVariant share = index.column() == DownloadModel::Progress
        ? index.data(DownloadModel::ShareRole)
        : QVariant();
    if (share.isNull() || share.toInt() < 0) {
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
        return;
    }
    // The row's ground first: the bar has its own text.
    const QString text = std::exchange(item.text, {});
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    item.text = text;
    paintBar(painter, item, share.toInt());
}
