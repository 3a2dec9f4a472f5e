#include "SleepReasons.h"

#include "Navigation.h"
#include "PageActivity.h"
#include "PageCompany.h"
#include "PagePermissions.h"
#include "PageQuestions.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

namespace {
bool isHeard(const WebPage &page)
{
    return page.recentlyAudible();
}

bool isAsking(const WebPage &page)
{
    return page.awaitsAnswer() || (page.questions() && page.questions()->shownQuestion());
}

/// It was made by a page, and nothing would make it again at its address.
bool isMadeByPage(const WebPage &page)
{
    const QString scheme = page.url().scheme();
    return scheme == "blob"_L1 || (scheme == "about"_L1 && page.openerUrl());
}

/// What it shows, or what was entered, would not come back by itself.
bool holdsWhatIsNotElsewhere(const WebPage &page)
{
    return page.hasTyped() || !page.mayAskAgain() || page.isAnswerToForm(page.url())
        || isMadeByPage(page);
}

/// Its user looks at it with the engine's tools.
bool isInspected(const WebPage &page)
{
    return page.devToolsPage();
}

/// The scripts of windows that one opened for another count on each other.
bool isTied(const WebPage &page)
{
    return page.openerPage() || page.company().hasWindows();
}
}

SleepLimit sleepLimitOf(WebPage &page, const Navigation &state)
{
    const bool isAtWork =
        state.isBusy() || page.activity().isWorking() || page.activity().maySend();
    if (isAtWork || isHeard(page) || isAsking(page) || holdsWhatIsNotElsewhere(page) || isTied(page)
        || isInspected(page) || !page.permissions().inUse().isEmpty())
        return SleepLimit::Much;
    return page.activity().hasConnection() ? SleepLimit::Connection : SleepLimit::Nothing;
}
