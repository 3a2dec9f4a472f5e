#include "LinkWindow.h"

#include "BrowserWindow.h"
#include "Frame.h"
#include "WindowMenu.h"

LinkWindow::LinkWindow(Frame &frame)
    : QObject(frame.window())
    , m_frame(frame)
{
}

void LinkWindow::open(const QString &url, const BrowserWindow &from)
{
    const bool isThere = m_window && !m_window->isUnloaded();
    if (isThere && m_window->privacy() != from.privacy()) {
        m_frame.openWindowLike(from.privacy(), url, m_frame.newWindowState());
        return;
    }
    if (!isThere) {
        m_frame.openWindowLike(from.privacy(), url, m_frame.newWindowState());
        m_window = activeBrowser(m_frame);
        return;
    }
    if (!m_window->isSeen())
        activateTab(m_frame, m_window->tabKey());
    m_window->browser()->navigate(url);
}
