#include "NavigationCommands.h"

#include "BrowserWindow.h"
#include "Frame.h"
#include "Settings.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

void onActivePage(Frame &frame, const QString &item, void (*act)(WebBrowser &))
{
    frame.handle(item, [&frame, act] {
        if (const BrowserWindow *active = activeBrowser(frame))
            act(*active->browser());
    });
}

void onEveryPage(Frame &frame, const QString &item, void (*act)(WebBrowser &))
{
    frame.handle(item, [act] {
        for (const BrowserWindow *form : browserForms())
            act(*form->browser());
    });
}

void stop(WebBrowser &page)
{
    page.stop();
}

void refresh(WebBrowser &page)
{
    page.refresh();
}

}

void registerNavigationCommands(Frame &frame)
{
    onActivePage(frame, u"mnuNavigationBackwards"_s, [](WebBrowser &page) { page.goBack(); });
    onActivePage(frame, u"mnuNavigationForwards"_s, [](WebBrowser &page) { page.goForward(); });
    onActivePage(frame, u"mnuNavigationStop"_s, stop);
    onActivePage(frame, u"mnuNavigationRefresh"_s, refresh);
    onEveryPage(frame, u"mnuNavigationStopAll"_s, stop);
    onEveryPage(frame, u"mnuNavigationRefreshAll"_s, refresh);
    frame.handle(u"mnuNavigationStartPage"_s,
                 [&frame] { frame.navigateActive(Settings::homeUrl.read()); });
}
