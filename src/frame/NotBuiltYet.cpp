#include "NotBuiltYet.h"

using namespace Qt::StringLiterals;

QStringList notBuiltYet()
{
    return {
        u"mnuToolsInternetOptions"_s,
        u"mnuToolsAdvancedInternetOptions"_s,
    };
}
