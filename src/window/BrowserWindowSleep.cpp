// A browser window whose page is given up, and comes back.
#include "BrowserWindow.h"
#include "Frame.h"
#include "PageQuestions.h"
#include "PageTurns.h"
#include "PopupEntrance.h"
#include "VisitRecorder.h"
#include "WindowTabs.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

namespace {
QEvent::Type activeEvent()
{
    static const auto type = QEvent::Type(QEvent::registerEventType());
    return type;
}
}

void BrowserWindow::fallAsleep()
{
    if (m_unloaded || m_browser->isWaiting() || m_browser->locationUrl().isEmpty()
        || m_questions->shownQuestion())
        return;
    // What comes back is no answer to a page's request any more.
    m_entrance.reset();
    isPopup = false;
    m_browser->fallAsleep();
    m_isAsleep = m_browser->isWaiting();
    m_frame.windowTabs().setAsleep(tabKey(), isAsleep());
}

void BrowserWindow::wake()
{
    if (!isAsleep() || m_unloaded)
        return;
    emit waking();
    m_isAsleep = false;
    m_frame.windowTabs().setAsleep(tabKey(), false);
    m_visits->expectReturn(m_browser->locationUrl());
    m_browser->navigateNow();
}

/// Ahead of what the windows around do as this one becomes active.
void BrowserWindow::wakeIfActiveSoon()
{
    if (isAsleep())
        QCoreApplication::postEvent(this, new QEvent(activeEvent()), Qt::HighEventPriority);
}

bool BrowserWindow::event(QEvent *event)
{
    if (event->type() != activeEvent())
        return InnerWindow::event(event);
    wakeIfActive();
    return true;
}

/// What stands for the page is in sight before the page, which takes its time to be made.
void BrowserWindow::wakeIfActive()
{
    if (!isActiveChild() || !isAsleep())
        return;
    m_browser->widget()->repaint();
    QTimer::singleShot(0, this, [this] {
        if (isActiveChild())
            wake();
    });
}

void BrowserWindow::waitAsleep(Waking when)
{
    m_isAsleep = true;
    m_frame.windowTabs().setAsleep(tabKey(), isAsleep());
    if (isActiveChild())
        wakeIfActiveSoon();
    else if (when == Waking::InSight && isAsleep())
        PageTurns::instance().add(this, PageTurns::Why::InSight);
}

void BrowserWindow::setTitle(const QString &title)
{
    if (!title.isEmpty() && !m_unloaded)
        titleChange(title);
}

/// One that was put to sleep in sight stays so until it is gone to.
void BrowserWindow::setSight(Sight sight)
{
    m_browser->setShown(sight != Sight::None);
    const bool wasInView = isInView();
    m_sight = sight;
    if (!wasInView && isInView() && isAsleep())
        PageTurns::instance().add(this, PageTurns::Why::InSight);
}
