#include "Factory.h"

#include <QAction>

#include "Frame.h"
#include "Settings.h"
#include "WebBrowser.h"
#include "WindowTabs.h"
#include "Yield.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int maximized = 2;
}

QPointer<frmBrowser> openBrowserWindow(Frame &frame, const QString &url, int state, Loading loading)
{
    if (const frmBrowser *active = activeBrowser(frame))
        frame.tbWindows().setPressed(WindowTabs::key(active->hWnd()), false);

    const QPointer form = new frmBrowser(frame);
    form->StartingLoad = loading;
    form->StartingAddress = url.isEmpty() ? Settings::homeUrl() : url;
    form->brwWebBrowser()->setSilent(frame.menuItem(u"mnuToolsScriptErrorSuppress"_s)->isChecked());
    frame.adopt(form);
    if (state == maximized)
        form->showMaximized();
    else
        form->show();
    letPendingEventsRun();
    return form;
}

void navigateActive(Frame &frame, const QString &url)
{
    if (const frmBrowser *active = activeBrowser(frame))
        active->brwWebBrowser()->Navigate(url);
    else
        frame.OpenBrowserWindow(url, maximized);
}
