#include "SleepRules.h"

#include "BrowserWindow.h"
#include "PageQuestions.h"
#include "Settings.h"

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

std::chrono::minutes after()
{
    return std::chrono::minutes(settingOf(Settings::sleepAfter, Settings::longestSleepAfter));
}

int memoryShare()
{
    return settingOf(Settings::sleepMemory, Settings::mostSleepMemory);
}

}
