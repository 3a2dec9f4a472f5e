#pragma once

#include "Overflow.h"

#include <QIcon>
#include <QList>
#include <QWidget>

class ToolBarButton;

/// A flat row of buttons and separators, told apart by key or by index from 1 (separators count).
///
/// A button never changes its own pressed state: whoever handles the click sets it. Only buttons
/// that fit whole are shown, and only those cost a widget; the others are offered to the band's
/// chevron. The bar is one stop of the Tab key; the arrow keys move inside.
class ToolBar : public QWidget, public Overflow {
    Q_OBJECT

public:
    enum class Style {
        Push,
        Check,    ///< may be shown pressed
        DropDown, ///< has an arrow at its right with an action of its own
        Menu      ///< has an arrow at its right; the button itself does what that does
    };
    static constexpr bool hasArrow(Style style)
    {
        return style == Style::DropDown || style == Style::Menu;
    }

    explicit ToolBar(QWidget *parent = nullptr);

    /// `text` is shown at the icon's right; without it the tool tip names the button.
    void addButton(const QString &key, const QString &toolTip, const QIcon &icon,
                   Style style = Style::Push, const QString &text = {});
    void addSeparator();
    void clear();
    /// Shown in grey, as far as there is room, while the bar has no buttons.
    void setEmptyText(const QString &text);

    int buttonCount() const { return int(m_items.size()); }
    /// Empty for separators and outside of the range, as is the tool tip.
    QString buttonKey(int index1) const;
    QString toolTip(int index1) const;
    using QWidget::setToolTip;
    void setToolTip(int index1, const QString &toolTip);
    QString text(int index1) const;

    /// By key these address the first button of that key; an unknown key does nothing.
    bool isPressed(const QString &key) const;
    void setPressed(const QString &key, bool pressed);

    /// The button's place in the bar; null while it does not fit.
    QRect buttonRect(int index1);

    int fullWidth() const override;
    QStringList overflowNames() override;
    QList<QAction *> overflowActions(QObject *parent, qsizetype first = 0,
                                     qsizetype count = -1) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void buttonClicked(const QString &key, int index1);
    /// The arrow of a drop-down button; `globalBelowButton` is where its menu belongs.
    void dropDown(const QString &key, QPoint globalBelowButton);
    void rightClicked(const QString &key, QPoint globalPos);
    /// The left button was held for half a second; no click follows if anyone listens.
    void longPressed(const QString &key, QPoint globalPos);

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    friend class ToolBarButton;

    struct Item {
        QString key;
        QString toolTip;
        QString text;
        QIcon icon;
        Style style = Style::Push;
        bool separator = false;
        bool pressed = false;
        mutable int width = -1;          // negative: not measured yet
        ToolBarButton *button = nullptr; // only while it fits
    };

    static QString nameOf(const Item &item);
    QList<int> overflowIndexes();
    QList<QAction *> actionsFor(int index, QObject *parent);
    int indexOf(const QString &key) const;
    const Item *item(int index1) const;
    bool wantsLongPress() const;
    int widthOf(const Item &item) const;
    QList<ToolBarButton *> shownButtons() const;
    void itemsChanged();
    void layOut();
    void placeButton(int index, const QRect &place);
    void dropButton(Item &item);
    void showState(const Item &item);
    void moveFocus(ToolBarButton *from, int key);
    void keepTabStop();
    void setTabStop(ToolBarButton *stop);

    QList<Item> m_items;
    QString m_emptyText;
    mutable int m_fullWidth = 0; // negative: not measured yet
    bool m_layoutPending = false;
};
