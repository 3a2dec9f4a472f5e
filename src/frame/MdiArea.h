#pragma once

#include "MdiArrange.h"

#include <QHash>
#include <QMdiArea>
#include <QPointer>
#include <functional>
#include <span>

class TitleBarStyle;

/// The frame's area of inner windows, with the behaviour of a classic multiple-document frame.
/// Its keys close the active child, once for each press, and go round the children in the order of
/// the forms (`Forms`), which is that of the tabs.
class MdiArea : public QMdiArea {
    Q_OBJECT
    Q_MOC_INCLUDE(<QMdiSubWindow>)

public:
    struct Key {
        enum Act { Close, Next, Previous };
        Act act;
        /// In the toolkit's portable form.
        const char *key;
    };
    /// They act wherever the keyboard is in the area's window.
    static std::span<const Key> keys();

    explicit MdiArea(QWidget *parent = nullptr);
    ~MdiArea() override;

    /// Adds a child, hidden until it is shown. One that has no size of its own gets the next place
    /// of a cascade; while the active child is maximized it comes up maximized too.
    void adopt(QMdiSubWindow *child);
    /// The active child; also while the frame is minimized, hidden or not the active window.
    QMdiSubWindow *activeChild() const;
    /// Shown children in the order of their creation.
    QList<QMdiSubWindow *> childWindows() const;

    /// The same in the order of the forms; those that are none come last.
    QList<QMdiSubWindow *> orderedWindows() const;

    void arrange(Arrange how);
    /// Gives every one of `forms` the minimized state; others are not touched.
    void minimizeAll(const QList<QWidget *> &forms);
    /// Gives every one of `forms` the normal state.
    void restoreAll(const QList<QWidget *> &forms);
    /// Gives a minimized child the normal state. The children are maximized all or none: where
    /// one is, this ends it.
    void restore(QMdiSubWindow *child);
    /// Where a child is in its normal state, or was last, pixels from the upper left corner of what
    /// the area shows unscrolled.
    QRect normalPlace(const QMdiSubWindow *child) const;
    /// Children in their normal state, given from back to front, come before all others in that
    /// order; some of them minimized, and one active, perhaps maximized. No other becomes active on
    /// the way.
    void putBack(const QList<QMdiSubWindow *> &children, const QList<QMdiSubWindow *> &minimized,
                 QMdiSubWindow *active, bool isMaximized);
    /// Gives the keyboard to the contents of the active child; while none is in sight, to the area.
    void takeFocus();

signals:
    /// A child has come, which is not shown yet and so not active.
    void adopted(QMdiSubWindow *child);
    /// Null when the last child has gone. Not sent when merely the frame loses the focus.
    void activeChildChanged(QMdiSubWindow *child);

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addShortcut(const Key &key);
    void closeActive();
    void goOn(int step);
    void noteActive();
    void noteActiveSoon();
    void keepFocus();
    void updateBackground();
    using WantedState = std::function<Qt::WindowStates(const QWidget *)>;
    void setStates(const QList<QWidget *> &forms, Qt::WindowStates state);
    void changeStates(const QList<QMdiSubWindow *> &children, const WantedState &wanted);
    /// How far the area is scrolled.
    QPoint scrolled() const;
    void notePlace(const QMdiSubWindow *child);
    /// The place of a cascade after `index` others.
    QRect cascadePlace(int index) const;
    /// How far each window of a cascade stands from the one before.
    int cascadeStep() const;
    /// Lines up the minimized children at the bottom; the rest of the visible area.
    QRect arrangeIcons();

    QPointer<QMdiSubWindow> m_active;
    /// The places of children in their normal state; the keys are never used as windows.
    QHash<const QObject *, QRect> m_places;
    /// What was last reported; compared only, never used as a window.
    const QObject *m_reported = nullptr;
    bool m_reportedIsGone = false;
    TitleBarStyle *m_titleBarStyle = nullptr;
    int m_adopted = 0;
    /// While the states of many children are changed.
    bool m_walking = false;
};
