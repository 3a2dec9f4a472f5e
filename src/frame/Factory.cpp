#include "Factory.h"

#include "Settings.h"
#include "WebBrowser.h"
#include "WindowTabs.h"

BrowserWindow *openBrowserWindow(Frame &frame, const QString &url, WindowState state,
                                 Loading loading, const PageState &pageState)
{
    if (const InnerWindow *active = activeInner(frame))
        frame.windowTabs().setPressed(active->tabKey(), false);

    auto *form = new BrowserWindow(frame);
    form->startingLoad = loading;
    form->startingState = pageState;
    form->startingAddress = url.isEmpty() ? Settings::homeUrl.read() : url;
    form->browser()->setSilent(frame.isOn(Settings::suppressScriptErrors));
    frame.adopt(form);
    if (state == WindowState::Maximized)
        form->showMaximized();
    else
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
