#include "AppFolder.h"
#include "FakeWebBrowser.h"
#include "FavoritesHome.h"
#include "MainWindow.h"
#include "MenuTable.h"
#include "Settings.h"
#include "TempAppFolder.h"
#include "ToolBar.h"

#include <QAction>
#include <QClipboard>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QtTest>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QStringList windowItems{u"mnuFileSaveAs"_s,
                              u"mnuFileProfilesSave"_s,
                              u"mnuFileClose"_s,
                              u"mnuFileCloseAll"_s,
                              u"mnuFileProperties"_s,
                              u"mnuFilePageSetup"_s,
                              u"mnuFilePrint"_s,
                              u"mnuFilePrintPreview"_s,
                              u"mnuEditUndo"_s,
                              u"mnuEditFind"_s,
                              u"mnuViewFontSize"_s,
                              u"mnuViewDocumentHTML"_s,
                              u"mnuViewZoom"_s,
                              u"mnuViewZoomIn"_s,
                              u"mnuViewZoomOut"_s,
                              u"mnuViewZoomUsual"_s,
                              u"mnuViewSource"_s,
                              u"mnuToolsDeveloper"_s,
                              u"mnuNavigationBackwards"_s,
                              u"mnuNavigationForwards"_s,
                              u"mnuNavigationStop"_s,
                              u"mnuNavigationStopAll"_s,
                              u"mnuNavigationRefresh"_s,
                              u"mnuNavigationRefreshAll"_s,
                              u"mnuFavoritesAdd"_s,
                              u"mnuWindowMinimizeAll"_s,
                              u"mnuWindowRestoreAll"_s,
                              u"mnuWindowCascade"_s,
                              u"mnuWindowTileHorizontal"_s,
                              u"mnuWindowTileVertical"_s,
                              u"mnuWindowCloseAll"_s};
const QStringList textItems{u"mnuFileNewFromClipboard"_s};
const QStringList toolBarItems{u"mnuViewToolBarAddressBar"_s, u"mnuViewToolBarFavoriteLinks"_s,
                               u"mnuViewToolBarTabStrip"_s};

struct ToggleRow {
    const char *name;
    /// Section and key of what the toggle writes; null when it writes nothing.
    const char *section = nullptr;
    const char *key = nullptr;
    const char *button = nullptr;
};

constexpr ToggleRow toggles[] = {
    {"mnuViewSearchBar", "View", "SearchBar", "Search"},
    {"mnuViewToolBarVisible", "View", "Toolbar"},
    {"mnuViewToolBarAddressBar", "View", "AddressBar"},
    {"mnuViewToolBarFavoriteLinks", "View", "FavoriteLinks"},
    {"mnuViewToolBarTabStrip", "View", "TabStrip"},
    {"mnuFavoritesShow", nullptr, nullptr, "Favorites"},
    {"mnuToolsAddPagesToHistory", "Settings", "AddToHistory"},
    {"mnuToolsAddFilesToCache", "Settings", "AddToCache"},
    {"mnuToolsKillPopUps", nullptr, nullptr, "PopupKiller"},
    {"mnuToolsSmartPopupKiller", "Settings", "SmartPopupKiller"},
    {"mnuToolsMaximizeCatcher"},
    {"mnuToolsScriptErrorSuppress"},
};

enum class Way { Menu, Run, Button };

}

/// What the menu table says, as it comes true in a real frame over pages without an engine: what is
/// enabled when, and what a toggle does, however it is run.
class tst_CommandTable : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void needsInEveryState_data();
    void needsInEveryState();
    void needsBeforeAnyMenuOpens();
    void anyChildIsAWindow();
    void greyedItemsRunFromElsewhere();
    void everyToggleIsKnownHere();
    void everySettingOfAMarkNamesAToggle();
    void toggle_data();
    void toggle();
    void markSetFromElsewhereIsFollowedAndNotStored_data() { rowsOfToggles(); }
    void markSetFromElsewhereIsFollowedAndNotStored();
    void toggleIsToldBeforeItIsStored();
    void whatIsStoredIsTheMarkAtTheEnd();
    void toggleThatCannotBeStoredIsLogged();
    void otherNamesDoTheSame_data();
    void otherNamesDoTheSame();
    void rulesRunBeforeTheirMenuAndThoseAround();
    void buttonsOfTheTableExist();

private:
    static void rowsOfToggles();
    QAction *item(const QString &name) const { return m_frame->menuItem(name); }
    ToolBar &bar(const char *name) const
    {
        return *m_frame->findChild<ToolBar *>(QLatin1StringView(name));
    }
    bool isPressed(const char *button) const
    {
        const QString key = QLatin1StringView(button);
        return bar("tbFunctions").isPressed(key) || bar("tbBrowser").isPressed(key);
    }
    void run(const ToggleRow &row, Way way) const;
    QString stored(const ToggleRow &row) const
    {
        return m_folder->setting(QLatin1StringView(row.section), QLatin1StringView(row.key),
                                 u"none"_s);
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_CommandTable::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    QApplication::clipboard()->setText(u"text"_s);
    m_frame = std::make_unique<MainWindow>();
}

void tst_CommandTable::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

void tst_CommandTable::needsInEveryState_data()
{
    QTest::addColumn<bool>("window");
    QTest::addColumn<bool>("text");
    QTest::addColumn<bool>("toolBar");
    for (const bool window : {false, true}) {
        for (const bool text : {false, true}) {
            for (const bool toolBar : {false, true})
                QTest::addRow("window %d, text %d, tool bar %d", window, text, toolBar)
                    << window << text << toolBar;
        }
    }
}

void tst_CommandTable::needsInEveryState()
{
    QFETCH(bool, window);
    QFETCH(bool, text);
    QFETCH(bool, toolBar);
    // The opposite first: each need is to be followed both ways.
    m_frame->openBrowserWindow(u"http://a/"_s, WindowState::Maximized);
    if (!window) {
        m_frame->activeChild()->close();
        QTRY_VERIFY(!m_frame->activeChild());
    }
    QApplication::clipboard()->setText(text ? u"text"_s : QString());
    item(u"mnuViewToolBarVisible"_s)->setChecked(!toolBar);
    item(u"mnuViewToolBarVisible"_s)->setChecked(toolBar);
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind == MenuEntry::Kind::Separator)
            continue;
        const QString name = QString::fromLatin1(entry.name);
        const bool expected = (window || !windowItems.contains(name))
            && (text || !textItems.contains(name)) && (toolBar || !toolBarItems.contains(name));
        QTRY_VERIFY2(item(name)->isEnabled() == expected, entry.name);
    }
}

void tst_CommandTable::needsBeforeAnyMenuOpens()
{
    for (const QString &name : windowItems)
        QVERIFY2(!item(name)->isEnabled(), qPrintable(name));
    // Whatever has been done to the item, a menu that opens shows what is so.
    for (const char *menu : {"mnuFile", "mnuFileNew", "mnuEdit", "mnuView", "mnuNavigation",
                             "mnuFavorites", "mnuTools", "mnuWindow"}) {
        for (const QString &name : windowItems)
            item(name)->setEnabled(true);
        emit item(QLatin1StringView(menu))->menu()->aboutToShow();
        for (const QString &name : windowItems)
            QVERIFY2(!item(name)->isEnabled(), menu);
    }
}

void tst_CommandTable::anyChildIsAWindow()
{
    m_frame->adopt(new QMdiSubWindow);
    m_frame->activeChild()->show();
    emit item(u"mnuFile"_s)->menu()->aboutToShow();
    QVERIFY(item(u"mnuFileClose"_s)->isEnabled());
}

void tst_CommandTable::greyedItemsRunFromElsewhere()
{
    int runs = 0;
    m_frame->handle(u"mnuFileClose"_s, [&runs] { ++runs; });
    QVERIFY(!item(u"mnuFileClose"_s)->isEnabled());
    item(u"mnuFileClose"_s)->trigger();
    QCOMPARE(runs, 0);
    m_frame->run(u"mnuFileClose"_s);
    QCOMPARE(runs, 1);
}

void tst_CommandTable::everyToggleIsKnownHere()
{
    QStringList known;
    for (const ToggleRow &row : toggles)
        known += QLatin1StringView(row.name);
    QStringList found;
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind == MenuEntry::Kind::Toggle)
            found += QLatin1StringView(entry.name);
    }
    QCOMPARE(found, known);
}

void tst_CommandTable::everySettingOfAMarkNamesAToggle()
{
    for (const Settings::Switch *setting : Settings::switches) {
        if (!setting->menuItem)
            continue;
        const auto isItem = [setting](const ToggleRow &row) {
            return QByteArrayView(row.name) == setting->menuItem;
        };
        const auto *row = std::find_if(std::begin(toggles), std::end(toggles), isItem);
        QVERIFY2(row != std::end(toggles), setting->menuItem);
        // Toggling writes its own form; the options dialog's is left to it.
        QCOMPARE(row->key != nullptr, setting->form == Settings::TrueFalse);
    }
}

void tst_CommandTable::rowsOfToggles()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < int(std::size(toggles)); ++index)
        QTest::newRow(toggles[index].name) << index;
}

void tst_CommandTable::toggle_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<Way>("way");
    for (int index = 0; index < int(std::size(toggles)); ++index) {
        QTest::addRow("%s from the menu", toggles[index].name) << index << Way::Menu;
        QTest::addRow("%s from elsewhere", toggles[index].name) << index << Way::Run;
        if (toggles[index].button)
            QTest::addRow("%s by its button", toggles[index].name) << index << Way::Button;
    }
}

void tst_CommandTable::run(const ToggleRow &row, Way way) const
{
    const QString name = QLatin1StringView(row.name);
    if (way == Way::Menu)
        item(name)->trigger();
    else if (way == Way::Run)
        m_frame->run(name);
    else
        for (const char *each : {"tbFunctions", "tbBrowser"})
            for (int index = 1; index <= bar(each).buttonCount(); ++index)
                if (bar(each).buttonKey(index) == QLatin1StringView(row.button))
                    emit bar(each).buttonClicked(bar(each).buttonKey(index), index);
}

void tst_CommandTable::toggle()
{
    QFETCH(int, index);
    QFETCH(Way, way);
    const ToggleRow &row = toggles[index];
    const QAction *action = item(QLatin1StringView(row.name));
    const QByteArray before = m_folder->readSettings();
    bool mark = action->isChecked();
    for (int time = 0; time < 2; ++time) {
        const QSignalSpy changes(action, &QAction::toggled);
        run(row, way);
        mark = !mark;
        QCOMPARE(action->isChecked(), mark);
        QCOMPARE(changes.size(), 1);
        if (row.key)
            QCOMPARE(stored(row), mark ? u"True"_s : u"False"_s);
        if (row.button)
            QCOMPARE(isPressed(row.button), mark);
    }
    // The favorites bar writes that it has hidden the search bar.
    if (!row.key && QLatin1StringView(row.name) != "mnuFavoritesShow"_L1)
        QCOMPARE(m_folder->readSettings(), before);
}

void tst_CommandTable::markSetFromElsewhereIsFollowedAndNotStored()
{
    QFETCH(int, index);
    const ToggleRow &row = toggles[index];
    QAction *action = item(QLatin1StringView(row.name));
    const QByteArray before = m_folder->readSettings();
    for (int time = 0; time < 2; ++time) {
        action->setChecked(!action->isChecked());
        if (row.button)
            QCOMPARE(isPressed(row.button), action->isChecked());
    }
    QCOMPARE(m_folder->readSettings(), before);
}

void tst_CommandTable::toggleIsToldBeforeItIsStored()
{
    const ToggleRow row{"mnuToolsSmartPopupKiller", "Settings", "SmartPopupKiller"};
    QStringList told;
    m_frame->handleToggle(item(QLatin1StringView(row.name)), [&](bool on) {
        told += (on ? u"on "_s : u"off "_s) + stored(row);
        QCOMPARE(item(QLatin1StringView(row.name))->isChecked(), on);
    });
    run(row, Way::Run);
    run(row, Way::Menu);
    QCOMPARE(told, QStringList({u"on none"_s, u"off True"_s}));
    QCOMPARE(stored(row), u"False"_s);
}

void tst_CommandTable::whatIsStoredIsTheMarkAtTheEnd()
{
    const ToggleRow row{"mnuToolsSmartPopupKiller", "Settings", "SmartPopupKiller"};
    QAction *action = item(QLatin1StringView(row.name));
    m_frame->handleToggle(item(QLatin1StringView(row.name)),
                          [action](bool) { action->setChecked(false); });
    run(row, Way::Run);
    QCOMPARE(stored(row), u"False"_s);
}

/// Nobody asked for it to be kept: the mark changes all the same, and no message comes.
void tst_CommandTable::toggleThatCannotBeStoredIsLogged()
{
    const ToggleRow row{"mnuToolsSmartPopupKiller", "Settings", "SmartPopupKiller"};
    const bool mark = item(QLatin1StringView(row.name))->isChecked();
    const QString file = AppFolder::settingsPath();
    QFile::remove(file);
    QVERIFY(QDir().mkpath(file + "/in the way"_L1));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Settings\\.ini"_s));
    run(row, Way::Menu);
    QCOMPARE(item(QLatin1StringView(row.name))->isChecked(), !mark);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(m_frame->findChildren<QMessageBox *>().isEmpty());
}

void tst_CommandTable::otherNamesDoTheSame_data()
{
    QTest::addColumn<QString>("item");
    QTest::newRow("mnuWindowNewWindow") << u"mnuFileNewCurrent"_s;
    QTest::newRow("mnuWindowCloseAll") << u"mnuFileCloseAll"_s;
    QTest::newRow("mnuNavigationSearchTheWeb") << u"mnuViewSearchBar"_s;
}

void tst_CommandTable::otherNamesDoTheSame()
{
    QFETCH(QString, item);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    m_frame->openBrowserWindow(u"http://a/"_s, WindowState::Maximized);
    int runs = 0;
    m_frame->handle(item, [&runs] { ++runs; });
    m_frame->run(name);
    QCOMPARE(runs, 1);
    QTRY_VERIFY(m_frame->menuItem(name)->isEnabled());
    m_frame->menuItem(name)->trigger();
    QCOMPARE(runs, 2);
}

void tst_CommandTable::rulesRunBeforeTheirMenuAndThoseAround()
{
    int runs = 0;
    m_frame->beforeOpening(u"mnuViewFontSize"_s, [&runs] { ++runs; });
    QCOMPARE(runs, 0);
    emit item(u"mnuViewFontSize"_s)->menu()->aboutToShow();
    QCOMPARE(runs, 1);
    emit item(u"mnuView"_s)->menu()->aboutToShow();
    QCOMPARE(runs, 2);
    for (const char *menu : {"mnuFile", "mnuViewToolBar"})
        emit item(QLatin1StringView(menu))->menu()->aboutToShow();
    QCOMPARE(runs, 2);
    m_frame->openBrowserWindow(u"http://a/"_s, WindowState::Maximized);
    QTRY_VERIFY(runs > 2);
}

void tst_CommandTable::buttonsOfTheTableExist()
{
    QSet<QString> buttons;
    for (const char *name : {"tbFunctions", "tbBrowser"}) {
        for (int index = 1; index <= bar(name).buttonCount(); ++index)
            buttons += bar(name).buttonKey(index);
    }
    QSet<QString> tied;
    for (const MenuEntry &entry : menuTable()) {
        if (entry.details.button)
            tied += QLatin1StringView(entry.details.button);
    }
    // A button for what no menu has.
    QCOMPARE(buttons - tied, QSet{u"Refresh"_s});
    QVERIFY(buttons.contains(tied));
}

QTEST_MAIN(tst_CommandTable)
#include "tst_commandtable.moc"
