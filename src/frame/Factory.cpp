#include "Factory.h"

#include "Settings.h"
#include "WebBrowser.h"
#include "WindowTabs.h"

namespace {

/// The frame's already, and not shown yet.
BrowserWindow *newWindow(Frame &frame, const QString &url, Loading loading,
                         const PageState &pageState)
{
    if (const InnerWindow *active = activeInner(frame))
        frame.windowTabs().setPressed(active->tabKey(), false);

    auto *form = new BrowserWindow(frame);
    form->startingLoad = loading;
    form->startingState = pageState;
    form->startingAddress = url.isEmpty() ? Settings::homeUrl.read() : url;
    form->browser()->setSilent(frame.isOn(Settings::suppressScriptErrors));
    frame.adopt(form);
    return form;
}

}

BrowserWindow *openBrowserWindow(Frame &frame, const QString &url, WindowState state,
                                 Loading loading, const PageState &pageState)
{
    BrowserWindow *form = newWindow(frame, url, loading, pageState);
    if (state == WindowState::Maximized)
        form->showMaximized();
    else
        form->show();
    return form;
}

BrowserWindow *openDeskWindow(Frame &frame, const DeskWindow &window, Loading loading)
{
    PageState pageState;
    pageState.scroll = window.scroll;
    pageState.zoom = window.zoom;
    pageState.isMuted = window.isMuted;
    BrowserWindow *form = newWindow(frame, window.address, loading, pageState);
    form->startingTitle = window.title;
    if (window.place.isValid())
        form->setGeometry(window.place);
    form->show();
    return form;
}

void navigateActive(Frame &frame, const QString &url)
{
    if (const BrowserWindow *active = activeBrowser(frame))
        active->browser()->navigate(url);
    else
        frame.openBrowserWindow(url, frame.newWindowState());
}
