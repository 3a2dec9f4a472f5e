#pragma once

#include "WindowTabs.h"

#include <QHash>
#include <QList>
#include <QTimer>
#include <QWidget>

class QToolButton;
class TabButton;

/// The strip of window buttons, `windowTabs`: one button per window in the order of opening, or
/// as the user has dragged them, one of them pressed at most. Tabs keep a readable width; when they
/// do not fit, the strip scrolls (arrow buttons, wheel) and keeps the pressed tab in view.
class TabStrip : public QWidget, public WindowTabs {
    Q_OBJECT

public:
    /// `image1` is the picture of a tab until its window gives another.
    explicit TabStrip(const QIcon &image1, QWidget *parent = nullptr);

    void addTab(const QString &key, const QString &caption) override;
    void removeTab(const QString &key) override;
    void setCaption(const QString &key, const QString &caption) override;
    void setToolTip(const QString &key, const QString &text) override;
    using QWidget::setToolTip;
    void setIcon(const QString &key, const QIcon &icon) override;
    void setUse(const QString &key, const QString &text) override;
    void setSound(const QString &key, PageSound sound) override;
    void setAsleep(const QString &key, bool asleep) override;
    void setPrivate(const QString &key) override;
    void setPressed(const QString &key, bool pressed) override;
    bool isPressed(const QString &key) const override;

    /// Keys in the order shown.
    QStringList keys() const;
    /// Empty for a key without a tab.
    QString caption(const QString &key) const;
    /// The tab's widget; null for a key without a tab.
    QWidget *tab(const QString &key) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// A tab was clicked or activated from the keyboard; it is pressed already.
    void tabClicked(const QString &key);
    void tabMiddleClicked(const QString &key);
    /// The user has moved a tab; `keys` has the new order.
    void tabMoved();
    /// The mark of what is in use was clicked.
    void useClicked(const QString &key);
    /// The mark of a page that is heard, or muted, was clicked.
    void soundClicked(const QString &key);
    /// Files or links were dropped on the strip; addresses in encoded form.
    void addressesDropped(const QStringList &addresses);
    /// The right button was released over the strip, its tabs and arrows included; or the menu
    /// key was pressed on a tab.
    void rightReleased(const QPoint &globalPos);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    TabButton *button(const QString &key) const;
    void connectTab(TabButton *tab);
    void makeArrows();
    void nameArrows();
    void moveFocusTo(TabButton *tab);
    void focusNeighbour(TabButton *from, int step);
    void updateFocusStop();
    void drag(TabButton *tab, int x);
    void endDrag(TabButton *tab, bool isDropped);
    bool moveTab(TabButton *tab, qsizetype to);
    void scheduleLayout();
    void layOut();
    void placeViewport();
    void scrollTo(int offset);
    void scrollTabs(int count);
    void ensureVisible(const TabButton *tab);
    bool isInView(const TabButton *tab) const;
    int scrollRange() const;

    QIcon m_image1;
    QHash<QString, TabButton *> m_tabs;
    QList<TabButton *> m_order;
    TabButton *m_pressed = nullptr;
    TabButton *m_focusStop = nullptr;
    QWidget *m_viewport = nullptr;
    QWidget *m_content = nullptr;
    QToolButton *m_left = nullptr;
    QToolButton *m_right = nullptr;
    QTimer m_layoutTimer;
    /// Where the dragged tab came from; -1: none is dragged.
    qsizetype m_draggedFrom = -1;
    int m_offset = 0;
    int m_wheelRest = 0;
};
