#include "DownloadDelegate.h"

#include "DownloadModel.h"
#include "ElidedAddress.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>

namespace {

/// Around a bar in its cell.
constexpr int gap = 3;
/// What a style may leave free beside a text, on both sides together.
constexpr int textMargins = 10;
/// Above and below the text of a row together.
constexpr int rowMargins = 10;

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
    // Of a name the ending tells what it is, of a text the beginning.
    item.textElideMode = index.column() == DownloadModel::Name ? Qt::ElideMiddle : Qt::ElideRight;
    if (index.column() == DownloadModel::Address || index.column() == DownloadModel::Page) {
        const QRect room = style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget);
        item.text =
            elidedAddress(item.text, item.fontMetrics, room.width() - textMargins, Qt::ElideRight);
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

QSize DownloadDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width(), std::max(size.height(), option.fontMetrics.height() + rowMargins)};
}
