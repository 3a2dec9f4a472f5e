#include "Factory.h"

#include "Settings.h"
#include "WebBrowser.h"
#include "WindowTabs.h"

using namespace Qt::StringLiterals;

namespace {

/// The frame's already, and not shown yet.
BrowserWindow *newWindow(Frame &frame, const QString &url, WindowState state, Loading loading,
                         const PageState &pageState, Privacy privacy = Privacy::Ordinary)
{
    if (const InnerWindow *active = activeInner(frame); active && state != WindowState::Behind)
        frame.windowTabs().setPressed(active->tabKey(), false);

    auto *form = new BrowserWindow(frame, privacy);
    form->startingLoad = loading;
    form->startingState = pageState;
    form->startingAddress = url.isEmpty() ? Settings::homeUrl.read() : url;
    form->browser()->setSilent(frame.isOn(Settings::suppressScriptErrors));
    frame.adopt(form);
    return form;
}

void show(BrowserWindow &form, WindowState state)
{
    if (state == WindowState::Behind)
        form.showBehind();
    else if (state == WindowState::Maximized)
        form.showMaximized();
    else
        form.show();
}

}

BrowserWindow *openBrowserWindow(Frame &frame, const QString &url, WindowState state,
                                 Loading loading, const PageState &pageState)
{
    BrowserWindow *form = newWindow(frame, url, state, loading, pageState);
    show(*form, state);
    return form;
}

BrowserWindow *openPrivateWindow(Frame &frame, const QString &url, WindowState state)
{
    BrowserWindow *form = newWindow(frame, url.isEmpty() ? u"about:blank"_s : url, state,
                                    Loading::Now, {}, Privacy::Private);
    show(*form, state);
    return form;
}

BrowserWindow *openDeskWindow(Frame &frame, const DeskWindow &window, Loading loading)
{
    PageState pageState;
    pageState.scroll = window.scroll;
    pageState.zoom = window.zoom;
    pageState.isMuted = window.isMuted;
    BrowserWindow *form =
        newWindow(frame, window.address, WindowState::AsOthers, loading, pageState);
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
