#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

#include "MainWindow.h"
#include "MenuTable.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

/// The menu bar as the user sees it, and how its items run their handlers.
class tst_Menus : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void menuBarHoldsTheMenusInOrder();
    void menuHoldsItsItemsInOrder_data();
    void menuHoldsItsItemsInOrder();
    void acceleratorsAreAsDesigned();
    void checkMarksBeforeSettings();
    void checkItemIsInvertedOnceHoweverItRuns();
    void translationTakesKeysByNameAndLeavesTheRest();
    void separatorsAreNeverLookedUp();
    void captionOfFiveThousandCharactersIsCut();

private:
    QStringList entries(const QString &menu) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_Menus::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_frame = std::make_unique<MainWindow>();
}

void tst_Menus::cleanup()
{
    m_frame.reset();
    m_folder.reset();
}

QStringList tst_Menus::entries(const QString &menu) const
{
    QStringList result;
    for (const QAction *action : m_frame->menuItem(menu)->menu()->actions())
        result += action->objectName() + u'|' + (action->isSeparator() ? u"-"_s : action->text());
    return result;
}

void tst_Menus::menuBarHoldsTheMenusInOrder()
{
    QStringList names;
    for (const QAction *action : m_frame->menuBar()->actions())
        names += action->objectName() + u'|' + action->text();
    const QStringList expected{u"mnuFile|&File"_s,           u"mnuEdit|&Edit"_s,
                               u"mnuView|&View"_s,           u"mnuNavigation|Navigation"_s,
                               u"mnuFavorites|&Favorites"_s, u"mnuTools|&Tools"_s,
                               u"mnuWindow|&Window"_s,       u"mnuHelp|&Help"_s};
    QCOMPARE(names, expected);
}

void tst_Menus::menuHoldsItsItemsInOrder_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("expected");
    // clang-format off
    QTest::newRow("file") << u"mnuFile"_s
        << u"mnuFileNew|&New;mnuFileOpen|&Open...;mnuFileSaveAs|&Save As...;mnuFileBar0|-;"
           "mnuFileProfiles|Open P&rofiles;mnuFileProfilesSave|&Save Profile As...;mnuFileBar1|-;"
           "mnuFileClose|&Close;mnuFileCloseAll|Close &All;mnuFileBar2|-;"
           "mnuFileProperties|Propert&ies;mnuFileBar3|-;mnuFilePageSetup|Page Setup...;"
           "mnuFilePrint|&Print...;mnuFilePrintPreview|Print P&review;mnuFileBar4|-;"
           "mnuFileExit|E&xit;mnuFileBar5|-;mnuFileRecentProfiles|R&ecent Profiles;"
           "mnuFileProfileSave|Sa&ve Profile;mnuFileProfileClose|Close Pro&file"_s;
    QTest::newRow("new") << u"mnuFileNew"_s
        << u"mnuFileNewCurrent|Current;mnuFileNewBar0|-;mnuFileNewBlankPage|Blank Page;"
           "mnuFileNewHomePage|Home Page;mnuFileNewBar1|-;"
           "mnuFileNewFromClipboard|From Clipboard;mnuFileNewBar2|-;mnuFileNewPrivate|&Private Window"_s;
    QTest::newRow("edit") << u"mnuEdit"_s
        << u"mnuEditUndo|&Undo;mnuEditBar0|-;mnuEditCut|Cu&t;mnuEditCopy|&Copy;"
           "mnuEditPaste|&Paste;mnuEditBar1|-;mnuEditFind|&Find;mnuEditBar2|-;"
           "mnuEditSelectAll|Select &All;mnuEditSelectNone|Select &None"_s;
    QTest::newRow("view") << u"mnuView"_s
        << u"mnuViewSearchBar|Search Bar;mnuViewBar0|-;mnuViewFontSize|Font Size;"
           "mnuViewToolBar|Tool Bar;mnuViewBar1|-;mnuViewRefresh|&Refresh;"
           "mnuViewDocumentHTML|&Document HTML;mnuViewBar2|-;mnuViewZoom|&Zoom;"
           "mnuViewFullScreen|F&ull Screen;mnuViewSource|Source As It Came"_s;
    QTest::newRow("zoom") << u"mnuViewZoom"_s
        << u"mnuViewZoomIn|&Larger;mnuViewZoomOut|&Smaller;mnuViewZoomUsual|&Usual Size"_s;
    QTest::newRow("font size") << u"mnuViewFontSize"_s
        << u"mnuViewFontSize20|Smallest;mnuViewFontSize21|Small;mnuViewFontSize22|Medium;"
           "mnuViewFontSize23|Large;mnuViewFontSize24|Largest"_s;
    QTest::newRow("tool bar") << u"mnuViewToolBar"_s
        << u"mnuViewToolBarVisible|Visible;mnuViewToolBarAddressBar|Address Bar;"
           "mnuViewToolBarFavoriteLinks|Favorite &Links;mnuViewToolBarTabStrip|Tab Strip;"
           "mnuViewToolBarBar1|-;mnuViewToolBarTop|Align Top;"
           "mnuViewToolBarBottom|Align Bottom"_s;
    QTest::newRow("navigation") << u"mnuNavigation"_s
        << u"mnuNavigationBackwards|Backwards;mnuNavigationForwards|Forwards;"
           "mnuNavigationBar1|-;mnuNavigationStartPage|Start Page;"
           "mnuNavigationSearchTheWeb|Search The Web;mnuNavigationBar2|-;"
           "mnuNavigationStop|Stop;mnuNavigationStopAll|Stop All;mnuNavigationBar3|-;"
           "mnuNavigationRefresh|Refresh;mnuNavigationRefreshAll|Refresh All"_s;
    QTest::newRow("favorites") << u"mnuFavorites"_s
        << u"mnuFavoritesAdd|&Add To Favorites;mnuFavoritesOrganize|&Organize Favorites;"
           "mnuFavoritesBar0|-;mnuFavoritesExport|Export Favorites;"
           "mnuFavoritesImport|Import Favorites;mnuFavoritesBar1|-;"
           "mnuFavoritesShow|&Show Favorites"_s;
    QTest::newRow("tools") << u"mnuTools"_s
        << u"mnuToolsOptions|&Options...;"
           "mnuToolsSmartPopupBlockerList|Smart &Popup Blocker List;mnuToolsBar0|-;"
           "mnuToolsInternetOptions|&Internet Options;"
           "mnuToolsAdvancedInternetOptions|&Advanced Internet Options;mnuToolsBar1|-;"
           "mnuToolsHistory|&History;mnuToolsBar2|-;mnuToolsKillPopUps|&Kill Popups;"
           "mnuToolsSmartPopupKiller|Smart Popup Killer;mnuToolsBar3|-;"
           "mnuToolsMaximizeCatcher|&Maximize Catcher;"
           "mnuToolsScriptErrorSuppress|&Suppress Script Errors;mnuToolsBar4|-;"
           "mnuToolsDownloads|&Downloads;mnuToolsVisits|&Visited Pages;mnuToolsCosts|What &Windows Cost;"
           "mnuToolsDeveloper|D&eveloper Tools"_s;
    QTest::newRow("history") << u"mnuToolsHistory"_s
        << u"mnuToolsAddPagesToHistory|Add Pages To &History;mnuToolsHistoryBar0|-;"
           "mnuToolsAddFilesToCache|Add Files To Cache"_s;
    QTest::newRow("window") << u"mnuWindow"_s
        << u"mnuWindowNewWindow|&New Window;mnuWindowBar0|-;mnuWindowMinimizeAll|&Minimize All;"
           "mnuWindowRestoreAll|&Restore All;mnuWindowBar1|-;mnuWindowCascade|&Cascade;"
           "mnuWindowTileHorizontal|Tile &Horizontal;mnuWindowTileVertical|Tile &Vertical;"
           "mnuWindowBar2|-;mnuWindowOpenBrowsers|Open Browsers;mnuWindowCloseAll|Close All;"
           "mnuWindowBar3|-;mnuWindowSleep|&Sleep;mnuWindowSleepOthers|Sleep All &Others;"
           "mnuWindowMute|M&ute;mnuWindowMuteOthers|Mute All O&thers;"
           "mnuWindowReopen|Reopen Closed &Window"_s;
    QTest::newRow("help") << u"mnuHelp"_s
        << u"mnuHelpAbout|&About ;mnuHelpBar0|-;mnuHelpDonate|Donate;mnuHelpBar1|-;"
           "mnuHelpCheckForUpdate|Check For Update;mnuHelpKelmarsh|Kelmarsh;mnuHelpBar2|-;"
           "mnuHelpKeys|&Keys;mnuHelpContents|&Contents"_s;
    // clang-format on
}

void tst_Menus::menuHoldsItsItemsInOrder()
{
    QFETCH(QString, menu);
    QFETCH(QString, expected);
    QCOMPARE(entries(menu).join(u';'), expected);
}

void tst_Menus::acceleratorsAreAsDesigned()
{
    const QMap<QString, QString> expected{
        {u"mnuFileNewCurrent"_s, u"Ctrl+N"_s},
        {u"mnuFileNewFromClipboard"_s, u"Ctrl+Ins"_s},
        {u"mnuFileOpen"_s, u"Ctrl+O"_s},
        {u"mnuFileProfiles"_s, u"Ctrl+R"_s},
        {u"mnuFileProfilesSave"_s, u"F12"_s},
        {u"mnuFileNewPrivate"_s, u"Ctrl+Shift+P"_s},
        {u"mnuFileProperties"_s, u"Ctrl+I"_s},
        {u"mnuFilePrint"_s, u"Ctrl+P"_s},
        {u"mnuEditCut"_s, u"Ctrl+X"_s},
        {u"mnuEditCopy"_s, u"Ctrl+C"_s},
        {u"mnuEditPaste"_s, u"Ctrl+V"_s},
        {u"mnuEditFind"_s, u"Ctrl+F"_s},
        {u"mnuEditSelectAll"_s, u"Ctrl+A"_s},
        {u"mnuViewSearchBar"_s, u"F3"_s},
        {u"mnuViewZoomIn"_s, u"Ctrl++"_s},
        {u"mnuViewZoomOut"_s, u"Ctrl+-"_s},
        {u"mnuViewZoomUsual"_s, u"Ctrl+0"_s},
        {u"mnuViewFullScreen"_s, u"F11"_s},
        {u"mnuNavigationStopAll"_s, u"Shift+Del"_s},
        {u"mnuNavigationRefresh"_s, u"F5"_s},
        {u"mnuNavigationRefreshAll"_s, u"Shift+F5"_s},
        {u"mnuFavoritesAdd"_s, u"Ctrl+D"_s},
        {u"mnuFavoritesOrganize"_s, u"Ctrl+B"_s},
        {u"mnuFavoritesShow"_s, u"F4"_s},
        {u"mnuToolsKillPopUps"_s, u"Ctrl+K"_s},
        {u"mnuToolsMaximizeCatcher"_s, u"Ctrl+M"_s},
        {u"mnuToolsScriptErrorSuppress"_s, u"Ctrl+S"_s},
        {u"mnuToolsDownloads"_s, u"Ctrl+J"_s},
        {u"mnuToolsVisits"_s, u"Ctrl+H"_s},
        {u"mnuToolsCosts"_s, u"Shift+Esc"_s},
        {u"mnuToolsDeveloper"_s, u"Ctrl+Shift+I"_s},
        {u"mnuWindowReopen"_s, u"Ctrl+Shift+T"_s},
        {u"mnuHelpContents"_s, u"F1"_s},
    };
    QMap<QString, QString> found;
    for (const MenuEntry &entry : menuTable()) {
        const QString name = QString::fromLatin1(entry.name);
        const QKeySequence key = m_frame->menuItem(name)->shortcut();
        if (!key.isEmpty())
            found.insert(name, key.toString(QKeySequence::PortableText));
    }
    QCOMPARE(found, expected);
}

void tst_Menus::checkMarksBeforeSettings()
{
    QStringList checked;
    for (const MenuEntry &entry : menuTable()) {
        const QString name = QString::fromLatin1(entry.name);
        if (m_frame->menuItem(name)->isChecked())
            checked += name;
    }
    const QStringList expected{u"mnuViewToolBarVisible"_s, u"mnuViewToolBarAddressBar"_s,
                               u"mnuViewToolBarFavoriteLinks"_s, u"mnuViewToolBarTabStrip"_s,
                               u"mnuViewToolBarTop"_s};
    QCOMPARE(checked, expected);
}

void tst_Menus::checkItemIsInvertedOnceHoweverItRuns()
{
    QAction *item = m_frame->menuItem(u"mnuToolsKillPopUps"_s);
    QVERIFY(!item->isChecked());
    item->trigger();
    QVERIFY(item->isChecked());
    m_frame->run(u"mnuToolsKillPopUps"_s);
    QVERIFY(!item->isChecked());
    item->setEnabled(false);
    m_frame->run(u"mnuToolsKillPopUps"_s);
    QVERIFY2(item->isChecked(), "a handler runs from elsewhere also while its item is greyed");
}

void tst_Menus::translationTakesKeysByNameAndLeavesTheRest()
{
    QVERIFY(m_folder->writeLanguage(
        u"English"_s, "[frmMain]\r\nmnuFileOpen=&Aufmachen\r\nmnuViewFontSize24=Riesig\r\n"));
    m_frame->translate();
    QCOMPARE(m_frame->menuItem(u"mnuFileOpen"_s)->text(), u"&Aufmachen"_s);
    QCOMPARE(m_frame->menuItem(u"mnuViewFontSize24"_s)->text(), u"Riesig"_s);
    QCOMPARE(m_frame->menuItem(u"mnuViewFontSize23"_s)->text(), u"Large"_s);
    QCOMPARE(m_frame->menuItem(u"mnuFile"_s)->text(), u"&File"_s);
}

void tst_Menus::separatorsAreNeverLookedUp()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[frmMain]\r\nmnuFileBar0=Nothing\r\n"));
    m_frame->translate();
    QVERIFY(m_frame->menuItem(u"mnuFileBar0"_s)->isSeparator());
    QVERIFY(m_frame->menuItem(u"mnuFileBar0"_s)->text() != "Nothing"_L1);
}

void tst_Menus::captionOfFiveThousandCharactersIsCut()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s,
                                    "[frmMain]\r\nmnuFileOpen=" + QByteArray(5000, 'x') + "\r\n"));
    m_frame->translate();
    QCOMPARE(m_frame->menuItem(u"mnuFileOpen"_s)->text().size(), 999);
}

QTEST_MAIN(tst_Menus)
#include "tst_menus.moc"
