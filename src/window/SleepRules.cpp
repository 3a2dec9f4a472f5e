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
}

namespace SleepRules {

bool maySleep(const BrowserWindow &window, Why why)
{
    const WebBrowser &browser = *window.browser();
    const bool hasPage = !window.isUnloaded() && !window.isPopup && !browser.isWaiting()
        && !browser.locationUrl().isEmpty();
    if (!hasPage || window.questions()->shownQuestion())
        return false;
    if (why == Why::User)
        return true;
    if (window.isSeen() && why != Why::OthersOfUser)
        return false;
    const SleepLimit limit = browser.maySleep();
    return limit == SleepLimit::Nothing || (limit == SleepLimit::Connection && why != Why::Unseen);
}

/// Things may be different by the time the page has answered.
void ask(BrowserWindow &window, Why why, const std::function<void()> &refused)
{
    const Why later = why == Why::User ? why : Why::OthersOfUser;
    const bool wasSeen = window.isSeen();
    window.browser()->askToSleep([window = QPointer(&window), later, wasSeen, refused](bool may) {
        if (!window)
            return;
        if (!may && refused)
            refused();
        if (!may || !maySleep(*window, later))
            return;
        window->fallAsleep();
        const bool isWanted = window->isSeen() && (!wasSeen || window->isActiveChild());
        if (isWanted && later != Why::User)
            window->waitAsleep(Waking::InSight);
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
