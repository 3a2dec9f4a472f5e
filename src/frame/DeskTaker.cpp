#include "DeskTaker.h"

#include "BrowserWindow.h"
#include "Frame.h"
#include "MdiArea.h"

#include <QHash>

namespace {

DeskWindow::State stateOf(const BrowserWindow &window)
{
    if (window.isMinimized())
        return DeskWindow::State::Minimized;
    return window.isMaximized() ? DeskWindow::State::Maximized : DeskWindow::State::Normal;
}

DeskWindow taken(const BrowserWindow &window)
{
    const WebBrowser &browser = *window.browser();
    const PageState page = browser.pageState(StateDepth::View);
    DeskWindow result;
    result.address = browser.locationUrl();
    result.title = window.windowTitle();
    result.state = stateOf(window);
    result.scroll = page.scroll;
    result.zoom = page.zoom;
    result.isMuted = page.isMuted;
    if (const auto *area = qobject_cast<const MdiArea *>(window.mdiArea()))
        result.place = area->normalPlace(&window);
    return result;
}

void noteOrder(Desk &desk, const QList<BrowserWindow *> &windows)
{
    QHash<const QMdiSubWindow *, int> indices;
    for (int i = 0; i < int(windows.size()); ++i)
        indices.insert(windows.at(i), i);
    const QMdiArea *area = windows.isEmpty() ? nullptr : windows.first()->mdiArea();
    if (!area)
        return;
    int order = 0;
    const QList<QMdiSubWindow *> stack = area->subWindowList(QMdiArea::StackingOrder);
    for (const QMdiSubWindow *window : stack) {
        if (const auto found = indices.constFind(window); found != indices.constEnd())
            desk.windows[*found].order = order++;
    }
}

}

Desk takeDesk(Frame &frame, const QList<BrowserWindow *> &windows)
{
    Desk desk;
    for (const BrowserWindow *window : windows)
        desk.windows.append(taken(*window));
    noteOrder(desk, windows);
    desk.active = int(windows.indexOf(activeBrowser(frame)));
    desk.frame = frame.window()->normalGeometry();
    desk.isFrameMaximized = frame.window()->isMaximized();
    return desk;
}
