#include "GripGuard.h"

#include "BandGrip.h"
#include "CoolBar.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <utility>

namespace {
bool isGrip(const QObject *object)
{
    return qobject_cast<const BandGrip *>(object);
}

bool isTab(const QEvent &event)
{
    const int key = static_cast<const QKeyEvent &>(event).key();
    return key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

bool comesByTabOrder(const QEvent &event)
{
    const Qt::FocusReason reason = static_cast<const QFocusEvent &>(event).reason();
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
}
}

GripGuard::GripGuard(QWidget &window, CoolBar &bar, const std::function<void()> &giveBack)
    : QObject(&window)
    , m_window(window)
    , m_giveBack(giveBack)
{
    const QList<BandGrip *> grips = bar.findChildren<BandGrip *>();
    for (BandGrip *grip : grips)
        grip->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &GripGuard::watch);
}

void GripGuard::watch(QWidget *old, QWidget *now)
{
    if (old && !isGrip(old))
        old->removeEventFilter(this);
    if (now && !isGrip(now) && now->window() == &m_window)
        now->installEventFilter(this);
    if (!std::exchange(m_strayed, false) || !isGrip(now) || isGrip(old))
        return;
    if (old && old->window() == &m_window && old->isVisible() && old->isEnabled())
        old->setFocus();
    else
        m_giveBack();
}

bool GripGuard::eventFilter(QObject *watched, QEvent *event)
{
    // Comes before the press, also where a shortcut takes that.
    if (event->type() == QEvent::ShortcutOverride)
        m_tabbed = isTab(*event);
    else if (event->type() == QEvent::FocusIn && isGrip(watched))
        m_strayed = comesByTabOrder(*event) && !m_tabbed;
    return false;
}
