#include "CostCommands.h"

#include "BrowserWindow.h"
#include "CostsWindow.h"
#include "Forms.h"
#include "Frame.h"
#include "SleepCommands.h"
#include "WindowMenu.h"

using namespace Qt::StringLiterals;

namespace {
void connectWindow(CostsWindow &list, Frame &frame)
{
    QObject::connect(&list, &CostsWindow::goToWanted, &list, [&frame](const BrowserWindow *window) {
        activateTab(frame, window->tabKey());
    });
    QObject::connect(&list, &CostsWindow::sleepWanted, &list,
                     [&frame](BrowserWindow *window) { sleepWindow(frame, *window); });
    QObject::connect(&list, &CostsWindow::closeWanted, &list,
                     [](BrowserWindow *window) { window->close(); });
}

void showCosts(Frame &frame)
{
    const bool isNew = Forms::named("frmCosts").isEmpty();
    CostsWindow *window = CostsWindow::openIn(frame);
    if (isNew)
        connectWindow(*window, frame);
    activateTab(frame, window->tabKey());
    window->focusContents();
}
}

void registerCostCommands(Frame &frame)
{
    frame.handle(u"mnuToolsCosts"_s, [&frame] { showCosts(frame); });
}
