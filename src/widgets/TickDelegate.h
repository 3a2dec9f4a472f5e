#pragma once

#include <QStyledItemDelegate>

/// For lists with boxes to tick. The style draws their edges a shade darker than a window, which on
/// the ground of a dark list cannot be seen; there they are drawn between its ground and its text.
class TickDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
