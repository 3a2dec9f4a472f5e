#include "TickDelegate.h"

namespace {
/// Of 255 grey levels.
constexpr int darkest = 128;
}

void TickDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    QPalette &palette = option->palette;
    if (qGray(palette.color(QPalette::Base).rgb()) < darkest)
        palette.setColor(QPalette::Window, palette.color(QPalette::Text).darker(120));
}
