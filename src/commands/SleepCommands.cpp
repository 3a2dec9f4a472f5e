#include "SleepCommands.h"

#include "BrowserWindow.h"
#include "ClosedWindows.h"
#include "DeskPlaces.h"
#include "Factory.h"
#include "Frame.h"
#include "SleepRules.h"
#include "SleepWatch.h"

#include <QAction>
#include <QMdiArea>
#include <QPointer>
#include <QStyle>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
using SleepRules::Why;

void sleepActive(const Frame &frame)
{
    BrowserWindow *active = activeBrowser(frame);
    if (active && SleepRules::maySleep(*active, Why::User))
        active->fallAsleep();
}

QList<BrowserWindow *> othersThatMay(const Frame &frame)
{
    QList<BrowserWindow *> windows = browserForms();
    windows.removeIf([active = frame.activeChild()](const BrowserWindow *each) {
        return each == active || !SleepRules::maySleep(*each, Why::OthersOfUser);
    });
    return windows;
}

/// Those whose page would ask to be left stay awake.
void sleepOthers(const Frame &frame)
{
    for (BrowserWindow *window : othersThatMay(frame)) {
        window->browser()->askToSleep([window = QPointer(window), &frame](bool may) {
            if (may && window && window != frame.activeChild()
                && SleepRules::maySleep(*window, Why::OthersOfUser))
                window->fallAsleep();
        });
    }
}

/// Inside the frame, whatever became of that meanwhile.
QRect placeInside(const QRect &place, const QMdiArea &area)
{
    return DeskPlaces::inside(place, area.viewport()->size(),
                              area.style()->pixelMetric(QStyle::PM_TitleBarHeight));
}

void reopen(Frame &frame)
{
    const std::optional<ClosedWindow> closed = ClosedWindows::take();
    if (!closed)
        return;
    const QMdiSubWindow *active = frame.activeChild();
    const bool isAmongMaximized = active && active->isMaximized();
    const auto state = closed->wasMaximized ? WindowState::Maximized : WindowState::AsOthers;
    BrowserWindow *window =
        openBrowserWindow(frame, closed->address, state, Loading::Asleep, closed->state);
    window->setTitle(closed->title);
    if (!closed->wasMaximized && !isAmongMaximized && closed->place.isValid())
        window->setGeometry(placeInside(closed->place, *window->mdiArea()));
    window->wake();
}

void followWindows(const Frame &frame)
{
    const BrowserWindow *active = activeBrowser(frame);
    frame.menuItem(u"mnuWindowSleep"_s)
        ->setEnabled(active && SleepRules::maySleep(*active, Why::User));
    frame.menuItem(u"mnuWindowSleepOthers"_s)->setEnabled(!othersThatMay(frame).isEmpty());
    frame.menuItem(u"mnuWindowReopen"_s)->setEnabled(!ClosedWindows::isEmpty());
}
}

void registerSleepCommands(Frame &frame)
{
    frame.handle(u"mnuWindowSleep"_s, [&frame] { sleepActive(frame); });
    frame.handle(u"mnuWindowSleepOthers"_s, [&frame] { sleepOthers(frame); });
    frame.handle(u"mnuWindowReopen"_s, [&frame] { reopen(frame); });
    frame.beforeOpening(u"mnuWindow"_s, [&frame] { followWindows(frame); });
    new SleepWatch(frame.window());
}
