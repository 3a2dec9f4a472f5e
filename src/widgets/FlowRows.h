#pragma once

#include <QLayout>
#include <QList>

/// Widgets side by side, all of one height, in as many rows as the width asks for.
class FlowRows : public QLayout {
    Q_OBJECT

public:
    using QLayout::QLayout;
    ~FlowRows() override;

    void addItem(QLayoutItem *item) override { m_items.append(item); }
    int count() const override { return int(m_items.size()); }
    QLayoutItem *itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem *takeAt(int index) override;

    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    /// The height that the rows take; places the items there if `isPlacing`.
    int arrange(const QRect &rect, bool isPlacing) const;

    QList<QLayoutItem *> m_items;
};
