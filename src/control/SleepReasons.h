#pragma once

#include "WebBrowser.h"

class Navigation;
class WebPage;

/// What `page` would lose if it were given up unasked while nobody looks at it.
SleepLimit sleepLimitOf(WebPage &page, const Navigation &state);
