#include "BrowserTabs.h"

#include "ThemedIcon.h"

using namespace Qt::StringLiterals;

namespace BrowserTabs {

QString displayed(const QString &text)
{
    constexpr int longest = 4096;
    if (text.size() <= longest)
        return text;
    const int end = text.at(longest - 1).isHighSurrogate() ? longest - 1 : longest;
    return text.left(end);
}

QIcon pageIcon()
{
    return themedIcon(u"page"_s);
}

}
