#include "NotBuiltYet.h"

using namespace Qt::StringLiterals;

QStringList notBuiltYet()
{
    return {
        u"mnuFileProfiles"_s,
        u"mnuFileProfilesSave"_s,
        u"mnuViewSearchBar"_s,
        u"mnuNavigationSearchTheWeb"_s,
        u"mnuFavoritesAdd"_s,
        u"mnuFavoritesOrganize"_s,
        u"mnuFavoritesExport"_s,
        u"mnuFavoritesImport"_s,
        u"mnuFavoritesShow"_s,
        u"mnuToolsOptions"_s,
        u"mnuToolsSmartPopupBlockerList"_s,
        u"mnuToolsInternetOptions"_s,
        u"mnuToolsAdvancedInternetOptions"_s,
        u"mnuToolsAddPagesToHistory"_s,
        u"mnuToolsAddFilesToCache"_s,
        u"mnuToolsMaximizeCatcher"_s,
        u"mnuToolsScriptErrorSuppress"_s,
    };
}
