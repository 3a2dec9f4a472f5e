#include "SleepCommands.h"

#include "BrowserWindow.h"
#include "ClosedWindows.h"
#include "Frame.h"
#include "PageQuestions.h"
#include "ReopenWindow.h"
#include "SleepRules.h"
#include "SleepWatch.h"
#include "Texts.h"
#include "WindowMenu.h"

#include <QAction>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
using SleepRules::Why;

void sleepIfItMay(const QPointer<BrowserWindow> &window)
{
    if (window && SleepRules::maySleep(*window, Why::User))
        window->fallAsleep();
}

void askUser(Frame &frame, BrowserWindow *window)
{
    activateTab(frame, window->tabKey());
    constexpr Texts<"SleepQuestion"> texts;
    PageQuestion question;
    question.kind = u"sleep"_s;
    question.asker = QUrl(window->browser()->locationUrl());
    question.text = texts.at<"strText",
                             "What this page shows or does, or what you entered in it, may be lost "
                             "if it goes to sleep.">();
    question.yes = texts.at<"cmdSleep", "Sleep">();
    question.no = Texts<"PageQuestions">::at<"cmdCancel", "Cancel">();
    question.done = [window = QPointer(window)](PageQuestion::Reply reply) {
        // Its box is there still.
        if (reply.answer == PageQuestion::Answer::Yes && window)
            QTimer::singleShot(0, window, [window] { sleepIfItMay(window); });
    };
    window->questions()->userActed();
    window->questions()->ask(question);
}

void sleepActive(Frame &frame)
{
    if (BrowserWindow *active = activeBrowser(frame))
        sleepWindow(frame, *active);
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
    for (BrowserWindow *window : othersThatMay(frame))
        SleepRules::ask(*window, Why::OthersOfUser);
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

/// A page that is asked whether it can be left, and says so, takes that for its end: who may yet
/// want to keep it is asked before.
void sleepWindow(Frame &frame, BrowserWindow &window)
{
    if (!SleepRules::maySleep(window, Why::User))
        return;
    if (window.browser()->maySleep() == SleepLimit::Much) {
        askUser(frame, &window);
        return;
    }
    SleepRules::ask(window, Why::User, [&frame, &window] {
        if (SleepRules::maySleep(window, Why::User))
            askUser(frame, &window);
    });
}

void registerSleepCommands(Frame &frame)
{
    frame.handle(u"mnuWindowSleep"_s, [&frame] { sleepActive(frame); });
    frame.handle(u"mnuWindowSleepOthers"_s, [&frame] { sleepOthers(frame); });
    frame.handle(u"mnuWindowReopen"_s, [&frame] {
        if (const std::optional<ClosedWindow> closed = ClosedWindows::take())
            reopenWindow(frame, *closed);
    });
    frame.beforeOpening(u"mnuWindow"_s, [&frame] { followWindows(frame); });
    new SleepWatch(frame.window());
}
