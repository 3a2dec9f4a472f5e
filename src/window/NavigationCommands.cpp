#include "NavigationCommands.h"

#include <QAction>

#include "Frame.h"
#include "Settings.h"
#include "WebBrowser.h"
#include "frmBrowser.h"

using namespace Qt::StringLiterals;

namespace {

void onActivePage(Frame &frame, const QString &item, void (*act)(WebBrowser &))
{
    frame.handle(item, [&frame, act] {
        if (const frmBrowser *active = activeBrowser(frame))
            act(*active->brwWebBrowser());
    });
}

void onEveryPage(Frame &frame, const QString &item, void (*act)(WebBrowser &))
{
    frame.handle(item, [act] {
        for (const frmBrowser *form : browserForms())
            act(*form->brwWebBrowser());
    });
}

void stop(WebBrowser &page)
{
    page.Stop();
}

void refresh(WebBrowser &page)
{
    page.Refresh();
}

void enableItems(Frame &frame)
{
    const bool hasWindow = frame.activeChild() != nullptr;
    for (const QString &item :
         {u"mnuNavigationBackwards"_s, u"mnuNavigationForwards"_s, u"mnuNavigationStop"_s,
          u"mnuNavigationStopAll"_s, u"mnuNavigationRefresh"_s, u"mnuNavigationRefreshAll"_s})
        frame.menuItem(item)->setEnabled(hasWindow);
}

}

void registerNavigationCommands(Frame &frame)
{
    onActivePage(frame, u"mnuNavigationBackwards"_s, [](WebBrowser &page) { page.GoBack(); });
    onActivePage(frame, u"mnuNavigationForwards"_s, [](WebBrowser &page) { page.GoForward(); });
    onActivePage(frame, u"mnuNavigationStop"_s, stop);
    onActivePage(frame, u"mnuNavigationRefresh"_s, refresh);
    onEveryPage(frame, u"mnuNavigationStopAll"_s, stop);
    onEveryPage(frame, u"mnuNavigationRefreshAll"_s, refresh);
    frame.handle(u"mnuNavigationStartPage"_s,
                 [&frame] { frame.NavigateActive(Settings::homeUrl()); });
    frame.beforeOpening(u"mnuNavigation"_s, [&frame] { enableItems(frame); });
}
