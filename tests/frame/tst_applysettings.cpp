#include <QAction>
#include <QtTest>

#include "ApplySettings.h"
#include "BandLayout.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "LinksBar.h"
#include "MainWindow.h"
#include "TempAppFolder.h"
#include "ToolBar.h"

using namespace Qt::StringLiterals;

/// What the stored settings make of the frame, and what of the frame is stored.
class tst_ApplySettings : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void withoutSettingsEverythingIsAsDesigned();
    void marksFollowStoredValues_data();
    void marksFollowStoredValues();
    void textThatIsNoBooleanLeavesTheDesignState();
    void hiddenStripGreysTheBandItems();
    void bandsFollowStoredValues();
    void buttonsFollowTheirMarks();
    void alignDocksAndWritesBack();
    void alignOfAnotherNumberChangesNothing();
    void navigationFlags_data();
    void navigationFlags();
    void missingKillPopupsKeepsTheMark();
    void bandLayoutIsRestoredByPosition();
    void bandLayoutKeepsDesignOverNonsense();
    void bandLayoutIsSavedByPosition();

private:
    void apply();
    bool checked(const char *name) const;
    CoolBar &bar() const { return *m_frame->findChild<CoolBar *>(); }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_ApplySettings::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_frame = std::make_unique<MainWindow>();
}

void tst_ApplySettings::cleanup()
{
    m_frame.reset();
    m_folder.reset();
}

void tst_ApplySettings::apply()
{
    applySettings(*m_frame, bar(), *m_frame->findChild<LinksBar *>());
}

bool tst_ApplySettings::checked(const char *name) const
{
    return m_frame->menuItem(QString::fromLatin1(name))->isChecked();
}

void tst_ApplySettings::withoutSettingsEverythingIsAsDesigned()
{
    apply();
    QVERIFY(!checked("mnuToolsKillPopUps"));
    QVERIFY(checked("mnuViewToolBarVisible"));
    QVERIFY(bar().isVisibleTo(m_frame.get()));
    for (int position = 1; position <= bar().bandCount(); ++position)
        QVERIFY(bar().band(position)->isVisible());
    QVERIFY(!checked("mnuViewSearchBar"));
    QCOMPARE(bar().dock(), CoolBar::Dock::Top);
    QVERIFY(checked("mnuToolsAddPagesToHistory"));
    QVERIFY(checked("mnuToolsAddFilesToCache"));
    QVERIFY(checked("mnuToolsSmartPopupKiller"));
    QVERIFY(!checked("mnuToolsScriptErrorSuppress"));
    QVERIFY(!checked("mnuToolsMaximizeCatcher"));
    QCOMPARE(m_frame->navigationFlags(), 0);
}

void tst_ApplySettings::marksFollowStoredValues_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *section, const char *key, const char *item) {
        for (const auto &[value, on] :
             {std::pair("True", true), {"False", false}, {"1", true}, {"0", false}, {"-3", true}})
            QTest::addRow("%s=%s", key, value)
                << QString::fromLatin1(section) << QString::fromLatin1(key)
                << QString::fromLatin1(value) << QByteArray(item) << on;
    };
    row("Settings", "Kill-Popups", "mnuToolsKillPopUps");
    row("Settings", "SmartPopupKiller", "mnuToolsSmartPopupKiller");
    row("Settings", "Suppress-Script-Errors", "mnuToolsScriptErrorSuppress");
    row("Settings", "Maximize-Catcher", "mnuToolsMaximizeCatcher");
    row("Settings", "AddToHistory", "mnuToolsAddPagesToHistory");
    row("Settings", "AddToCache", "mnuToolsAddFilesToCache");
    row("View", "Toolbar", "mnuViewToolBarVisible");
    row("View", "FavoriteLinks", "mnuViewToolBarFavoriteLinks");
    row("View", "TabStrip", "mnuViewToolBarTabStrip");
    row("View", "AddressBar", "mnuViewToolBarAddressBar");
    row("View", "SearchBar", "mnuViewSearchBar");
}

void tst_ApplySettings::marksFollowStoredValues()
{
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QByteArray, item);
    QFETCH(bool, expected);
    m_folder->setSetting(section, key, value);
    apply();
    QCOMPARE(checked(item.constData()), expected);
}

void tst_ApplySettings::textThatIsNoBooleanLeavesTheDesignState()
{
    m_folder->setSetting(u"View"_s, u"TabStrip"_s, u"maybe"_s);
    m_folder->setSetting(u"Settings"_s, u"Maximize-Catcher"_s, u"on"_s);
    apply();
    QVERIFY(checked("mnuViewToolBarTabStrip"));
    QVERIFY(bar().band(u"Tabs"_s)->isVisible());
    QVERIFY(!checked("mnuToolsMaximizeCatcher"));
}

void tst_ApplySettings::hiddenStripGreysTheBandItems()
{
    m_folder->setSetting(u"View"_s, u"Toolbar"_s, u"False"_s);
    apply();
    QVERIFY(!bar().isVisibleTo(m_frame.get()));
    for (const QString &name : {u"mnuViewToolBarAddressBar"_s, u"mnuViewToolBarFavoriteLinks"_s,
                                u"mnuViewToolBarTabStrip"_s}) {
        QVERIFY(!m_frame->menuItem(name)->isEnabled());
        QVERIFY(m_frame->menuItem(name)->isChecked());
    }
    m_frame->menuItem(u"mnuViewToolBarVisible"_s)->trigger();
    QVERIFY(bar().isVisibleTo(m_frame.get()));
    QVERIFY(m_frame->menuItem(u"mnuViewToolBarTabStrip"_s)->isEnabled());
    QCOMPARE(m_folder->setting(u"View"_s, u"Toolbar"_s), u"True"_s);
}

void tst_ApplySettings::bandsFollowStoredValues()
{
    m_folder->setSetting(u"View"_s, u"FavoriteLinks"_s, u"0"_s);
    m_folder->setSetting(u"View"_s, u"AddressBar"_s, u"False"_s);
    apply();
    QVERIFY(!bar().band(u"Links"_s)->isVisible());
    QVERIFY(!bar().band(u"Address"_s)->isVisible());
    QVERIFY(bar().band(u"Tabs"_s)->isVisible());
    m_frame->menuItem(u"mnuViewToolBarAddressBar"_s)->trigger();
    QVERIFY(bar().band(u"Address"_s)->isVisible());
    QCOMPARE(m_folder->setting(u"View"_s, u"AddressBar"_s), u"True"_s);
}

void tst_ApplySettings::buttonsFollowTheirMarks()
{
    m_folder->setSetting(u"Settings"_s, u"Kill-Popups"_s, u"1"_s);
    m_folder->setSetting(u"View"_s, u"SearchBar"_s, u"True"_s);
    apply();
    QVERIFY(m_frame->findChild<ToolBar *>(u"tbFunctions"_s)->isPressed(u"PopupKiller"_s));
    QVERIFY(m_frame->findChild<ToolBar *>(u"tbBrowser"_s)->isPressed(u"Search"_s));
    m_folder->setSetting(u"Settings"_s, u"Kill-Popups"_s, u"0"_s);
    apply();
    QVERIFY(!m_frame->findChild<ToolBar *>(u"tbFunctions"_s)->isPressed(u"PopupKiller"_s));
}

void tst_ApplySettings::alignDocksAndWritesBack()
{
    m_folder->setSetting(u"ToolBar"_s, u"Align"_s, u"2"_s);
    apply();
    QCOMPARE(bar().dock(), CoolBar::Dock::Bottom);
    QVERIFY(checked("mnuViewToolBarBottom"));
    QVERIFY(!checked("mnuViewToolBarTop"));
    m_frame->menuItem(u"mnuViewToolBarTop"_s)->trigger();
    QCOMPARE(bar().dock(), CoolBar::Dock::Top);
    QVERIFY(checked("mnuViewToolBarTop"));
    QVERIFY(!checked("mnuViewToolBarBottom"));
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"Align"_s), u"1"_s);
    m_frame->menuItem(u"mnuViewToolBarTop"_s)->trigger();
    QVERIFY2(checked("mnuViewToolBarTop"), "the side that is in force stays marked");
}

void tst_ApplySettings::alignOfAnotherNumberChangesNothing()
{
    m_folder->setSetting(u"ToolBar"_s, u"Align"_s, u"3"_s);
    apply();
    QCOMPARE(bar().dock(), CoolBar::Dock::Top);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"Align"_s), u"3"_s);
}

void tst_ApplySettings::navigationFlags_data()
{
    QTest::addColumn<QString>("history");
    QTest::addColumn<QString>("cache");
    QTest::addColumn<int>("flags");
    QTest::newRow("both") << u"True"_s << u"True"_s << 0;
    QTest::newRow("neither") << u"False"_s << u"False"_s << 10;
    QTest::newRow("history alone") << u"True"_s << u"False"_s << 2;
    QTest::newRow("cache alone") << u"False"_s << u"True"_s << 2;
}

void tst_ApplySettings::navigationFlags()
{
    QFETCH(QString, history);
    QFETCH(QString, cache);
    QFETCH(int, flags);
    m_folder->setSetting(u"Settings"_s, u"AddToHistory"_s, history);
    m_folder->setSetting(u"Settings"_s, u"AddToCache"_s, cache);
    apply();
    QCOMPARE(m_frame->navigationFlags(), flags);
}

void tst_ApplySettings::missingKillPopupsKeepsTheMark()
{
    m_frame->menuItem(u"mnuToolsKillPopUps"_s)->trigger();
    apply();
    QVERIFY(checked("mnuToolsKillPopUps"));
}

void tst_ApplySettings::bandLayoutIsRestoredByPosition()
{
    m_folder->setSetting(u"ToolBar"_s, u"NewRow2"_s, u"True"_s);
    m_folder->setSetting(u"ToolBar"_s, u"NewRow3"_s, u"False"_s);
    m_folder->setSetting(u"ToolBar"_s, u"Width1"_s, u"4321"_s);
    restoreBandLayout(bar());
    QVERIFY(bar().band(2)->newRow());
    QVERIFY(!bar().band(3)->newRow());
    QCOMPARE(bar().band(1)->width(), 4321.0);
}

void tst_ApplySettings::bandLayoutKeepsDesignOverNonsense()
{
    const double design = bar().band(4)->width();
    m_folder->setSetting(u"ToolBar"_s, u"Width4"_s, u"wide"_s);
    m_folder->setSetting(u"ToolBar"_s, u"NewRow4"_s, u"perhaps"_s);
    restoreBandLayout(bar());
    QCOMPARE(bar().band(4)->width(), design);
    QVERIFY(bar().band(4)->newRow());
}

void tst_ApplySettings::bandLayoutIsSavedByPosition()
{
    bar().band(2)->setWidth(5000.4);
    saveBandLayout(bar());
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"Width2"_s), u"5000"_s);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow1"_s, u"none"_s), u"none"_s);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow2"_s), u"False"_s);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow3"_s), u"True"_s);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow6"_s), u"False"_s);
}

QTEST_MAIN(tst_ApplySettings)
#include "tst_applysettings.moc"
