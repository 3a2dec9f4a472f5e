#include "FocusReturn.h"

#include <QApplication>
#include <QWidget>

FocusReturn::FocusReturn(QWidget &window, const std::function<void()> &giveBack)
    : QObject(&window)
    , m_window(window)
    , m_giveBack(giveBack)
{
    connect(qApp, &QApplication::focusChanged, this, &FocusReturn::watch);
}

void FocusReturn::watch(const QWidget *old, const QWidget *now)
{
    if (!m_window.isVisible())
        return;
    if (now && now->window() == &m_window && isOutOfReach(old))
        m_giveBack();
    // Whoever took it away may be about to give it to something else, or to show what has it.
    else if ((!now && m_window.isActiveWindow()) || isOutOfReach(now))
        QMetaObject::invokeMethod(this, &FocusReturn::returnFromNowhere, Qt::QueuedConnection);
}

bool FocusReturn::isOutOfReach(const QWidget *widget) const
{
    return widget && widget->window() == &m_window
        && (!widget->isVisible() || !widget->isEnabled());
}

void FocusReturn::returnFromNowhere()
{
    const QWidget *now = QApplication::focusWidget();
    if ((!now || isOutOfReach(now)) && m_window.isVisible() && m_window.isActiveWindow())
        m_giveBack();
}
