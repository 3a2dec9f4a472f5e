#include "NotBuiltYet.h"

using namespace Qt::StringLiterals;

QStringList notBuiltYet()
{
    return {
        u"mnuFileSaveAs"_s,
        u"mnuFileProperties"_s,
        u"mnuFilePageSetup"_s,
        u"mnuFilePrint"_s,
        u"mnuFilePrintPreview"_s,
        u"mnuEditUndo"_s,
        u"mnuEditCut"_s,
        u"mnuEditCopy"_s,
        u"mnuEditPaste"_s,
        u"mnuEditFind"_s,
        u"mnuEditSelectAll"_s,
        u"mnuEditSelectNone"_s,
        u"mnuViewSearchBar"_s,
        u"mnuViewFontSize20"_s,
        u"mnuViewFontSize21"_s,
        u"mnuViewFontSize22"_s,
        u"mnuViewFontSize23"_s,
        u"mnuViewFontSize24"_s,
        u"mnuViewRefresh"_s,
        u"mnuViewDocumentHTML"_s,
        u"mnuNavigationSearchTheWeb"_s,
        u"mnuFavoritesAdd"_s,
        u"mnuFavoritesOrganize"_s,
        u"mnuFavoritesExport"_s,
        u"mnuFavoritesImport"_s,
        u"mnuFavoritesShow"_s,
        u"mnuToolsOptions"_s,
        u"mnuToolsInternetOptions"_s,
        u"mnuToolsAdvancedInternetOptions"_s,
        u"mnuToolsAddPagesToHistory"_s,
        u"mnuToolsAddFilesToCache"_s,
        u"mnuToolsScriptErrorSuppress"_s,
    };
}
