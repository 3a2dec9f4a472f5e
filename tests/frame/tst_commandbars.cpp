#include "CommandBars.h"
#include "FakeWebBrowser.h"
#include "FavoritesBar.h"
#include "FavoritesHome.h"
#include "Language.h"
#include "MainWindow.h"
#include "SearchBar.h"
#include "TempAppFolder.h"
#include "ToolBar.h"
#include "ToolBarButton.h"

#include <QAction>
#include <QMdiSubWindow>
#include <QMenu>
#include <QtTest>

/// The two tool bars of commands in a real frame, over pages without an engine.
class tst_CommandBars : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void buttonsInOrder();
    void buttonRunsItsHandler_data();
    void buttonRunsItsHandler();
    void homeGoesToTheHomePage();
    void homeWithoutAWindowOpensOne();
    void pageButtonsActOnTheActiveWindow();
    void refreshAsksForACompleteReload();
    void pageButtonsWithoutAWindowDoNothing_data();
    void pageButtonsWithoutAWindowDoNothing();
    void popupKillerIsPressedWhileOn();
    void searchIsPressedWhileTheBarIsShown();
    void favoritesIsPressedWhileTheBarIsShown();
    void arrowOfNewOpensTheMenuBelow();
    void fontSizeOpensTheMenuBelow_data();
    void fontSizeOpensTheMenuBelow();
    void fontSizeWithoutAWindowShowsNoMenu();
    void fontSizeThatDoesNotFitOpensItsMenuToo();
    void historyMenuOfBack();
    void historyMenuWithoutAWindow();
    void toolTipsAreTranslatedByKey();
    void toolTipNamesTheButton();

private:
    ToolBar &bar(const QString &name) const { return *m_frame->findChild<ToolBar *>(name); }
    ToolBarButton *button(const QString &key) const;
    void click(const QString &key) const { QTest::mouseClick(button(key), Qt::LeftButton); }
    bool isPressed(const QString &key) const;
    FakeWebBrowser *openPage(const QString &url) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_CommandBars::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<MainWindow>();
    m_frame->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_frame.get()));
    QTRY_VERIFY(button(u"Search"_s) && button(u"FontSize"_s));
}

void tst_CommandBars::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

ToolBarButton *tst_CommandBars::button(const QString &key) const
{
    for (const QString &name : {u"tbFunctions"_s, u"tbBrowser"_s}) {
        if (auto *found = bar(name).findChild<ToolBarButton *>(key))
            return found;
    }
    return nullptr;
}

bool tst_CommandBars::isPressed(const QString &key) const
{
    return bar(u"tbFunctions"_s).isPressed(key) || bar(u"tbBrowser"_s).isPressed(key);
}

FakeWebBrowser *tst_CommandBars::openPage(const QString &url) const
{
    m_frame->openBrowserWindow(url, WindowState::AsOthers);
    return FakeWebBrowser::made().last();
}

void tst_CommandBars::buttonsInOrder()
{
    const auto keys = [this](const QString &name) {
        QStringList result;
        for (int index = 1; index <= bar(name).buttonCount(); ++index)
            result += bar(name).buttonKey(index) + u'|' + bar(name).toolTip(index);
        return result;
    };
    QCOMPARE(keys(u"tbBrowser"_s),
             QStringList({u"Back|Backwards"_s, u"Forward|Forwards"_s, u"Stop|Stop"_s,
                          u"Refresh|Refresh"_s, u"Home|Home"_s, u"Search|Search"_s}));
    QCOMPARE(keys(u"tbFunctions"_s),
             QStringList({u"New|New Window"_s, u"Profile|Open Profile"_s, u"Save|Save Profile"_s,
                          u"PopupKiller|Popup Killer"_s, u"Favorites|Favorites"_s,
                          u"FontSize|Font Size"_s}));
}

void tst_CommandBars::buttonRunsItsHandler_data()
{
    QTest::addColumn<QString>("item");
    QTest::newRow("New") << u"mnuFileNewCurrent"_s;
    QTest::newRow("Profile") << u"mnuFileProfiles"_s;
    QTest::newRow("Save") << u"mnuFileProfilesSave"_s;
    QTest::newRow("PopupKiller") << u"mnuToolsKillPopUps"_s;
    QTest::newRow("Favorites") << u"mnuFavoritesShow"_s;
    QTest::newRow("Search") << u"mnuViewSearchBar"_s;
}

void tst_CommandBars::buttonRunsItsHandler()
{
    QFETCH(QString, item);
    const QString key = QString::fromLatin1(QTest::currentDataTag());
    int runs = 0;
    m_frame->handle(item, [&runs] { ++runs; });
    click(key);
    QCOMPARE(runs, 1);
    m_frame->menuItem(item)->setEnabled(false);
    click(key);
    QVERIFY2(runs == 2, "a greyed menu item does not stop the button");
}

void tst_CommandBars::homeGoesToTheHomePage()
{
    m_folder->setSetting(u"Settings"_s, u"Home-URL"_s, u"http://home/"_s);
    const FakeWebBrowser *page = openPage(u"http://a/"_s);
    click(u"Home"_s);
    QCOMPARE(FakeWebBrowser::made().size(), 1);
    QCOMPARE(page->navigated.last(), u"http://home/"_s);
}

void tst_CommandBars::homeWithoutAWindowOpensOne()
{
    m_folder->setSetting(u"Settings"_s, u"Home-URL"_s, u"http://home/"_s);
    click(u"Home"_s);
    QCOMPARE(FakeWebBrowser::made().size(), 1);
    QTRY_COMPARE(FakeWebBrowser::made().first()->navigated, QStringList{u"http://home/"_s});
    QVERIFY(m_frame->activeChild()->isMaximized());
}

void tst_CommandBars::pageButtonsActOnTheActiveWindow()
{
    const FakeWebBrowser *first = openPage(u"http://a/"_s);
    const FakeWebBrowser *second = openPage(u"http://b/"_s);
    const int stops = second->stops;
    click(u"Back"_s);
    QCOMPARE(second->backs, 1);
    click(u"Forward"_s);
    click(u"Forward"_s);
    QCOMPARE(second->forwards, 2);
    QCOMPARE(second->backs, 1);
    click(u"Stop"_s);
    QCOMPARE(second->stops, stops + 1);
    QCOMPARE(first->backs + first->forwards, 0);
}

void tst_CommandBars::refreshAsksForACompleteReload()
{
    const FakeWebBrowser *page = openPage(u"http://a/"_s);
    click(u"Refresh"_s);
    QCOMPARE(page->refreshLevels, QList<int>{3});
    QCOMPARE(page->refreshes, 0);
}

void tst_CommandBars::pageButtonsWithoutAWindowDoNothing_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key : {"Back", "Forward", "Stop", "Refresh"})
        QTest::newRow(key) << QString::fromLatin1(key);
}

void tst_CommandBars::pageButtonsWithoutAWindowDoNothing()
{
    QFETCH(QString, key);
    QVERIFY(button(key)->isEnabled());
    click(key);
    QVERIFY(FakeWebBrowser::made().isEmpty());
    QVERIFY(!m_frame->activeChild());
    QVERIFY(!QApplication::activePopupWidget() && !QApplication::activeModalWidget());
}

void tst_CommandBars::popupKillerIsPressedWhileOn()
{
    QVERIFY(!isPressed(u"PopupKiller"_s));
    click(u"PopupKiller"_s);
    QVERIFY(isPressed(u"PopupKiller"_s));
    QVERIFY(m_frame->menuItem(u"mnuToolsKillPopUps"_s)->isChecked());
    m_frame->menuItem(u"mnuToolsKillPopUps"_s)->trigger();
    QVERIFY(!isPressed(u"PopupKiller"_s));
}

void tst_CommandBars::searchIsPressedWhileTheBarIsShown()
{
    click(u"Search"_s);
    QVERIFY(m_frame->findChild<SearchBar *>()->isVisible());
    QVERIFY(isPressed(u"Search"_s));
    click(u"Search"_s);
    QVERIFY(!m_frame->findChild<SearchBar *>()->isVisible());
    QVERIFY(!isPressed(u"Search"_s));
}

void tst_CommandBars::favoritesIsPressedWhileTheBarIsShown()
{
    click(u"Favorites"_s);
    QVERIFY(m_frame->findChild<FavoritesBar *>()->isVisible());
    QVERIFY(isPressed(u"Favorites"_s));
    click(u"Search"_s);
    QVERIFY(!isPressed(u"Favorites"_s));
    QVERIFY(isPressed(u"Search"_s));
}

void tst_CommandBars::arrowOfNewOpensTheMenuBelow()
{
    ToolBarButton *shown = button(u"New"_s);
    const QPoint arrow(shown->width() - 4, shown->height() / 2);
    int runs = 0;
    m_frame->handle(u"mnuFileNewCurrent"_s, [&runs] { ++runs; });
    QTest::mouseClick(shown, Qt::LeftButton, {}, arrow);
    QMenu *menu = m_frame->menuItem(u"mnuFileNew"_s)->menu();
    QCOMPARE(QApplication::activePopupWidget(), menu);
    QCOMPARE(menu->pos(), shown->mapToGlobal(QPoint(0, shown->height())));
    QCOMPARE(runs, 0);
    menu->close();
}

void tst_CommandBars::fontSizeOpensTheMenuBelow_data()
{
    QTest::addColumn<bool>("arrow");
    QTest::newRow("click") << false;
    QTest::newRow("arrow") << true;
}

void tst_CommandBars::fontSizeOpensTheMenuBelow()
{
    QFETCH(bool, arrow);
    openPage(u"http://a/"_s);
    ToolBarButton *shown = button(u"FontSize"_s);
    QTest::mouseClick(shown, Qt::LeftButton, {},
                      QPoint(arrow ? shown->width() - 4 : 4, shown->height() / 2));
    QMenu *menu = m_frame->menuItem(u"mnuViewFontSize"_s)->menu();
    QCOMPARE(QApplication::activePopupWidget(), menu);
    QCOMPARE(menu->pos(), shown->mapToGlobal(QPoint(0, shown->height())));
    menu->close();
}

void tst_CommandBars::fontSizeWithoutAWindowShowsNoMenu()
{
    ToolBarButton *shown = button(u"FontSize"_s);
    for (const int x : {4, shown->width() - 4}) {
        QTest::mouseClick(shown, Qt::LeftButton, {}, QPoint(x, shown->height() / 2));
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(!m_frame->menuItem(u"mnuViewFontSize"_s)->menu()->isVisible());
    }
}

void tst_CommandBars::fontSizeThatDoesNotFitOpensItsMenuToo()
{
    openPage(u"http://a/"_s);
    ToolBar &functions = bar(u"tbFunctions"_s);
    functions.resize(60, functions.height());
    QVERIFY(functions.buttonRect(6).isNull());
    QObject owner;
    QList<QAction *> items = functions.overflowActions(&owner);
    items.removeIf([](const QAction *each) { return !each->text().startsWith("Font Size"_L1); });
    QVERIFY2(items.size() == 1, "what does the same is there once");
    QCOMPARE(items.first()->text(), u"Font Size"_s);
    items.first()->trigger();
    QMenu *menu = m_frame->menuItem(u"mnuViewFontSize"_s)->menu();
    QVERIFY(menu->isVisible());
    QCOMPARE(menu->y(), functions.mapToGlobal(QPoint(0, functions.height())).y());
    menu->close();
}

void tst_CommandBars::historyMenuOfBack()
{
    FakeWebBrowser *page = openPage(u"http://a/"_s);
    page->history = {{-1, u"Before"_s, u"http://before/"_s}};
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                            button(u"Back"_s)->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(button(u"Back"_s), &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    QCOMPARE(menu->actions().size(), 1);
    menu->actions().first()->trigger();
    QCOMPARE(page->wentTo, QList<int>{-1});
    menu->close();
}

void tst_CommandBars::historyMenuWithoutAWindow()
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                            button(u"Back"_s)->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(button(u"Back"_s), &event);
    QVERIFY(!QApplication::activePopupWidget());
}

void tst_CommandBars::toolTipsAreTranslatedByKey()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s,
                                    "[frmMain-Toolbar]\r\nBack=Zur\xfc"
                                    "ck\r\nFontSize=Schrift\r\n"));
    m_frame->translate();
    QCOMPARE(bar(u"tbBrowser"_s).toolTip(1), u"Zurück"_s);
    QCOMPARE(bar(u"tbFunctions"_s).toolTip(6), u"Schrift"_s);
    QCOMPARE(bar(u"tbBrowser"_s).toolTip(2), u"Forwards"_s);
    QCOMPARE(button(u"Back"_s)->toolTip(), u"Zurück"_s);
    QCOMPARE(button(u"Back"_s)->accessibleName(), u"Zurück"_s);
}

void tst_CommandBars::toolTipNamesTheButton()
{
    for (ToolBarButton *each : m_frame->findChildren<ToolBarButton *>()) {
        if (!each->objectName().isEmpty())
            QCOMPARE(each->accessibleName(), each->toolTip());
    }
}

QTEST_MAIN(tst_CommandBars)
#include "tst_commandbars.moc"
