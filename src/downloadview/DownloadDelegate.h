#pragma once

#include <QStyledItemDelegate>

/// Paints a download's cells: addresses so that their host stays in sight, and how far it is as a
/// bar.
class DownloadDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
