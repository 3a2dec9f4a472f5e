#include "VisitCommands.h"

#include "BrowserWindow.h"
#include "Forms.h"
#include "Frame.h"
#include "MsgBox.h"
#include "Texts.h"
#include "VisitHistory.h"
#include "VisitsWindow.h"
#include "WindowMenu.h"

#include <QMdiArea>

using namespace Qt::StringLiterals;

namespace {
/// The window with a page that the user was in last.
BrowserWindow *lastBrowser(const VisitsWindow &list)
{
    const QList<QMdiSubWindow *> windows =
        list.mdiArea()->subWindowList(QMdiArea::ActivationHistoryOrder);
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        if (auto *browser = qobject_cast<BrowserWindow *>(*window);
            browser && !browser->isUnloaded())
            return browser;
    }
    return nullptr;
}

void openFrom(const VisitsWindow &list, Frame &frame, const QString &address)
{
    const BrowserWindow *window = lastBrowser(list);
    if (!window) {
        frame.openBrowserWindow(address, WindowState::AsOthers);
        return;
    }
    activateTab(frame, window->tabKey());
    window->browser()->navigate(address);
}

void connectWindow(VisitsWindow &list, Frame &frame)
{
    QObject::connect(&list, &VisitsWindow::openWanted, &list,
                     [&list, &frame](const QString &address) { openFrom(list, frame, address); });
    QObject::connect(&list, &VisitsWindow::newWindowWanted, &list,
                     [&frame](const QString &address) {
                         frame.openBrowserWindow(address, WindowState::AsOthers);
                     });
}

void showVisits(Frame &frame)
{
    VisitHistory *history = VisitHistory::current();
    if (!history) {
        MsgBox::inform(frame.window(),
                       Texts<"frmVisits">::at<"strNotKept",
                                              "Another running program keeps the visited "
                                              "pages. This one keeps none.">());
        return;
    }
    const bool isNew = Forms::named("frmVisits").isEmpty();
    VisitsWindow *window = VisitsWindow::openIn(frame, *history);
    if (isNew)
        connectWindow(*window, frame);
    activateTab(frame, window->tabKey());
    window->focusContents();
}
}

void registerVisitCommands(Frame &frame)
{
    frame.handle(u"mnuToolsVisits"_s, [&frame] { showVisits(frame); });
}
