#include "SleepRules.h"

#include "BrowserWindow.h"
#include "PageQuestions.h"
#include "Settings.h"

#include <QPointer>
#include <algorithm>

namespace {
int settingOf(const Settings::Number &number, int most)
{
    const double value = number.read().value_or(*number.missing);
    return int(std::clamp(value, 0.0, double(most)));
}

bool hasPageToGiveUp(const BrowserWindow &window)
{
    const WebBrowser &browser = *window.browser();
    return !window.isUnloaded() && !window.isPopup && !browser.isWaiting()
        && !browser.locationUrl().isEmpty() && !window.questions()->shownQuestion();
}

/// Where its user wants it, one that would lose something is first to be agreed to.
bool isStillToBeAsked(const BrowserWindow &window, SleepRules::Why why)
{
    return SleepRules::maySleep(window, why)
        && (why != SleepRules::Why::User || window.browser()->maySleep() != SleepLimit::Much);
}
}

namespace SleepRules {

bool maySleep(const BrowserWindow &window, Why why)
{
    if (!hasPageToGiveUp(window))
        return false;
    if (why == Why::User)
        return true;
    if (window.isSeen() && why != Why::OthersOfUser)
        return false;
    const SleepLimit limit = window.browser()->maySleep();
    return limit == SleepLimit::Nothing || (limit == SleepLimit::Connection && why != Why::Unseen);
}

/// Things may be different by the time the page is heard. What it does as it is told to end, as
/// sending a last word, keeps it no more: it would live on behind its end.
void ask(BrowserWindow &window, Why why, const std::function<void()> &refused)
{
    const Why later = why == Why::User ? why : Why::OthersOfUser;
    const bool wasSeen = window.isSeen();
    const QPointer self(&window);
    const auto mayStill = [self, later] { return self && isStillToBeAsked(*self, later); };
    window.browser()->askToSleep(mayStill, [self, later, wasSeen, refused](bool may) {
        if (!self)
            return;
        if (!may && refused)
            refused();
        if (!may || !hasPageToGiveUp(*self))
            return;
        self->fallAsleep();
        const bool isWanted = self->isSeen() && (!wasSeen || self->isActiveChild());
        if (isWanted && later != Why::User)
            self->waitAsleep(Waking::InSight);
    });
}

std::chrono::minutes after()
{
    return std::chrono::minutes(settingOf(Settings::sleepAfter, Settings::longestSleepAfter));
}

int memoryShare()
{
    return settingOf(Settings::sleepMemory, Settings::mostSleepMemory);
}

}
