#include "BrowserTabs.h"

#include "ThemedIcon.h"

using namespace Qt::StringLiterals;

namespace BrowserTabs {

QIcon pageIcon()
{
    return themedIcon(u"page"_s);
}

}
