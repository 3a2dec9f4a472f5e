#include "InnerWindow.h"

#include "Forms.h"
#include "Frame.h"
#include "WindowTabs.h"

#include <QMdiArea>

namespace {
int lastWindowNumber = 0;
}

InnerWindow::InnerWindow(Frame &frame)
    : m_frame(frame)
    , m_hWnd(++lastWindowNumber)
{
}

QString InnerWindow::tabKey() const
{
    return WindowTabs::key(m_hWnd);
}

void InnerWindow::focusContents()
{
    if (widget())
        widget()->setFocus();
}

/// The base class hides a window to restore it, and the keyboard would go on to the next control in
/// it, as after Tab; once it is in sight again, it would be found there.
bool InnerWindow::focusNextPrevChild(bool next)
{
    return !isHidden() && QMdiSubWindow::focusNextPrevChild(next);
}

void InnerWindow::showBehind()
{
    QMdiSubWindow *active = m_frame.activeChild();
    if (!active || active == this) {
        show();
        return;
    }
    m_frame.keepTyping([this, active] {
        // The area makes no window the active one that is not enabled.
        setEnabled(false);
        show();
        setEnabled(true);
        stackUnder(active);
    });
}

/// Three quarters of the frame's room, as new inner windows are; what they show gives no size of
/// its own.
QSize InnerWindow::sizeHint() const
{
    const QMdiArea *area = mdiArea();
    return area ? area->viewport()->size() * 3 / 4 : QMdiSubWindow::sizeHint();
}

void InnerWindow::pressTab()
{
    WindowTabs &tabs = m_frame.windowTabs();
    if (!tabs.isPressed(tabKey()))
        tabs.setPressed(tabKey(), true);
}

InnerWindow *activeInner(const Frame &frame)
{
    return qobject_cast<InnerWindow *>(frame.activeChild());
}

QList<InnerWindow *> innerForms()
{
    QList<InnerWindow *> windows;
    for (QWidget *form : Forms::all()) {
        if (auto *window = qobject_cast<InnerWindow *>(form))
            windows.append(window);
    }
    return windows;
}
