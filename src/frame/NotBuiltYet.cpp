#include "NotBuiltYet.h"

using namespace Qt::StringLiterals;

QStringList notBuiltYet()
{
    return {
        u"mnuFavoritesOrganize"_s,
        u"mnuToolsInternetOptions"_s,
        u"mnuToolsAdvancedInternetOptions"_s,
    };
}
