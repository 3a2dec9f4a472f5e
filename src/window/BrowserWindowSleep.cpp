// A browser window whose page is given up, and comes back.
#include "BrowserWindow.h"
#include "Frame.h"
#include "PageQuestions.h"
#include "PopupEntrance.h"
#include "WindowTabs.h"

#include <QTimer>

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
    m_browser->navigateNow();
}

void BrowserWindow::waitAsleep()
{
    m_isAsleep = true;
    m_frame.windowTabs().setAsleep(tabKey(), isAsleep());
    if (isActiveChild())
        QTimer::singleShot(0, this, &BrowserWindow::wake);
}

void BrowserWindow::setTitle(const QString &title)
{
    if (!title.isEmpty() && !m_unloaded)
        titleChange(title);
}

/// One that was put to sleep in sight stays so until it is gone to.
void BrowserWindow::setSeen(bool seen)
{
    m_browser->setShown(seen);
    if (std::exchange(m_isSeen, seen) != seen && seen)
        QTimer::singleShot(0, this, &BrowserWindow::wake);
}
