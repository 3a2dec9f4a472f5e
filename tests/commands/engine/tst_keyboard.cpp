#include <QToolButton>

#include "../Session.h"
#include "BandGrip.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "EngineTest.h"
#include "MdiArea.h"
#include "ToolBar.h"
#include "ToolBarButton.h"

using namespace Qt::StringLiterals;

/// The keyboard is the page's where what had it has gone, and where a window comes back.
class tst_Keyboard : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void hiddenPlaceGivesTheKeyboardToThePage_data();
    void hiddenPlaceGivesTheKeyboardToThePage();
    void closeButtonGivesTheKeyboardToThePage_data();
    void closeButtonGivesTheKeyboardToThePage();
    void disabledButtonGivesTheKeyboardToThePage();
    void deletedControlGivesTheKeyboardToThePage();
    void hiddenElsewhereLeavesTheKeyboardAlone();
    void arrowsAfterwardsMoveNoBand_data();
    void arrowsAfterwardsMoveNoBand();
    void lastWindowGivesTheKeyboardToTheArea();
    void hiddenWithoutAWindow();

    void windowsThatComeBackHaveTheKeyboard_data();
    void windowsThatComeBackHaveTheKeyboard();
    void restoreAllLeavesTheAddressAlone();
    void closedWindowHandsTheKeyboardOn();
    void minimizedPageHasNoKeyboard();
    void minimizedPageGetsNoKeyboard_data();
    void minimizedPageGetsNoKeyboard();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    CoolBar &bars() const { return *m_session->frame->findChild<CoolBar *>(); }
    /// The widget called `name`, or the first in it that takes the keyboard, gets it.
    void focus(const QString &name) const;
    /// The bands in their order; those that begin a row with "/" in front.
    QStringList rows() const;
    bool isOnAGrip() const { return qobject_cast<BandGrip *>(QApplication::focusWidget()); }
    bool pageHasKeyboard() const
    {
        const BrowserWindow *active = m_session->active();
        return active && active->browser()->widget()->isVisible()
            && active->browser()->widget()->isAncestorOf(QApplication::focusWidget());
    }
    void type(Qt::Key key) const { QTest::keyClick(QApplication::focusWidget(), key); }
    /// What is typed reaches the page of the active window, which shows it in its title.
    void typeIntoThePage() const;
    void openSecond() const;

    std::unique_ptr<Session> m_session;
};

void tst_Keyboard::init()
{
    m_session = std::make_unique<Session>();
    for (const char *path : {"/keys", "/more"}) {
        m_session->server.page(path,
                               "<title>-</title><script>onkeydown = e => document.title += e.key"
                               "</script>");
    }
    m_session->start(url(u"/keys"_s));
    QTRY_VERIFY(m_session->shows(url(u"/keys"_s)));
    m_session->frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_session->frame.get()));
    QTRY_VERIFY(pageHasKeyboard());
}

void tst_Keyboard::openSecond() const
{
    m_session->frame->openBrowserWindow(url(u"/more"_s), WindowState::AsOthers);
    QTRY_VERIFY(m_session->shows(url(u"/more"_s)));
    QTRY_VERIFY(pageHasKeyboard());
}

void tst_Keyboard::focus(const QString &name) const
{
    auto *place = m_session->frame->findChild<QWidget *>(name);
    QVERIFY2(place, qPrintable(name));
    const QList<QWidget *> inside = QList<QWidget *>{place} + place->findChildren<QWidget *>();
    for (QWidget *each : inside) {
        if ((each->focusPolicy() & Qt::TabFocus) && each->isVisible()) {
            each->setFocus();
            break;
        }
    }
    QVERIFY(place == QApplication::focusWidget()
            || place->isAncestorOf(QApplication::focusWidget()));
}

QStringList tst_Keyboard::rows() const
{
    QStringList rows;
    for (int i = 1; i <= bars().bandCount(); ++i)
        rows += (bars().band(i)->newRow() ? u"/"_s : QString()) + bars().band(i)->key();
    return rows;
}

void tst_Keyboard::typeIntoThePage() const
{
    QVERIFY(pageHasKeyboard());
    const BrowserWindow *window = m_session->active();
    QTRY_VERIFY(window->windowTitle().startsWith(u'-'));
    // The engine drops what is typed until the page is painted.
    const auto arrives = [this, window] {
        type(Qt::Key_K);
        return window->windowTitle().endsWith(u'k');
    };
    QTRY_VERIFY(arrives());
}

void tst_Keyboard::hiddenPlaceGivesTheKeyboardToThePage_data()
{
    QTest::addColumn<QString>("show");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("hide");
    const auto row = [](const char *name, const char *show, const char *place, const char *hide) {
        QTest::newRow(name) << QString::fromLatin1(show) << QString::fromLatin1(place)
                            << QString::fromLatin1(hide);
    };
    row("F3 F3", "mnuViewSearchBar", "brwSearch", "mnuViewSearchBar");
    row("F3 F4", "mnuViewSearchBar", "brwSearch", "mnuFavoritesShow");
    row("F4 F4", "mnuFavoritesShow", "FavoritesBar1", "mnuFavoritesShow");
    row("F4 F3", "mnuFavoritesShow", "FavoritesBar1", "");
    row("address", "", "brwURL1", "mnuViewToolBarAddressBar");
    row("tabs", "", "tbWindows", "mnuViewToolBarTabStrip");
    row("gripper", "", "gripTabs", "mnuViewToolBarTabStrip");
    row("all, from the address", "", "brwURL1", "mnuViewToolBarVisible");
    row("all, from a gripper", "", "gripFunctions", "mnuViewToolBarVisible");
}

void tst_Keyboard::hiddenPlaceGivesTheKeyboardToThePage()
{
    QFETCH(QString, show);
    QFETCH(QString, place);
    QFETCH(QString, hide);
    if (!show.isEmpty())
        m_session->frame->run(show);
    focus(place);
    const QPointer<QWidget> had = QApplication::focusWidget();
    if (!hide.isEmpty()) {
        m_session->frame->run(hide);
        QVERIFY(!had || !had->isVisible());
    } else {
        // The other bar takes the keyboard for itself.
        m_session->frame->run(u"mnuViewSearchBar"_s);
        QVERIFY(m_session->frame->findChild<QWidget *>(u"SearchBar1"_s)
                    ->isAncestorOf(QApplication::focusWidget()));
        m_session->frame->run(u"mnuViewSearchBar"_s);
    }
    QVERIFY(!isOnAGrip());
    typeIntoThePage();
}

void tst_Keyboard::closeButtonGivesTheKeyboardToThePage_data()
{
    QTest::addColumn<QString>("show");
    QTest::addColumn<QString>("bar");
    QTest::addColumn<bool>("byKey");
    QTest::newRow("search, mouse") << u"mnuViewSearchBar"_s << u"SearchBar1"_s << false;
    QTest::newRow("search, key") << u"mnuViewSearchBar"_s << u"SearchBar1"_s << true;
    QTest::newRow("favorites, mouse") << u"mnuFavoritesShow"_s << u"FavoritesBar1"_s << false;
    QTest::newRow("favorites, key") << u"mnuFavoritesShow"_s << u"FavoritesBar1"_s << true;
}

void tst_Keyboard::closeButtonGivesTheKeyboardToThePage()
{
    QFETCH(QString, show);
    QFETCH(QString, bar);
    QFETCH(bool, byKey);
    m_session->frame->run(show);
    auto *side = m_session->frame->findChild<QWidget *>(bar);
    auto *button = side->findChild<QToolButton *>(u"cmdExit"_s);
    focus(bar);
    if (byKey) {
        button->setFocus();
        type(Qt::Key_Space);
    } else {
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QVERIFY(!side->isVisible());
    typeIntoThePage();
}

void tst_Keyboard::disabledButtonGivesTheKeyboardToThePage()
{
    auto *bar = m_session->frame->findChild<ToolBar *>(u"tbBrowser"_s);
    auto *button = bar->findChild<ToolBarButton *>();
    button->setFocus();
    QCOMPARE(QApplication::focusWidget(), button);
    button->setEnabled(false);
    typeIntoThePage();
}

void tst_Keyboard::deletedControlGivesTheKeyboardToThePage()
{
    auto *control = new QLineEdit(m_session->frame.get());
    control->show();
    control->setFocus();
    QCOMPARE(QApplication::focusWidget(), control);
    delete control;
    QTRY_VERIFY(pageHasKeyboard());
    typeIntoThePage();
}

void tst_Keyboard::hiddenElsewhereLeavesTheKeyboardAlone()
{
    focus(u"brwURL1"_s);
    const QWidget *had = QApplication::focusWidget();
    for (const char *item : {"mnuViewSearchBar", "mnuFavoritesShow", "mnuFavoritesShow",
                             "mnuViewToolBarFavoriteLinks", "mnuViewToolBarTabStrip"}) {
        m_session->frame->run(QString::fromLatin1(item));
        if (QLatin1StringView(item) == "mnuViewSearchBar"_L1)
            focus(u"brwURL1"_s);
        QCOMPARE(QApplication::focusWidget(), had);
    }
}

void tst_Keyboard::arrowsAfterwardsMoveNoBand_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::newRow("search bar") << QStringList{u"mnuViewSearchBar"_s, u"mnuViewSearchBar"_s};
    QTest::newRow("other bar") << QStringList{u"mnuViewSearchBar"_s, u"mnuFavoritesShow"_s};
    QTest::newRow("last window") << QStringList{u"mnuFileCloseAll"_s};
}

/// Neither on the screen nor in what is stored at exit.
void tst_Keyboard::arrowsAfterwardsMoveNoBand()
{
    QFETCH(QStringList, items);
    const QStringList before = rows();
    for (const QString &item : items)
        m_session->frame->run(item);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left})
        type(key);
    QCOMPARE(rows(), before);
    QVERIFY(m_session->frame->close());
    for (int position = 2; position <= bars().bandCount(); ++position) {
        const QString stored =
            m_session->folder.setting(u"ToolBar"_s, u"NewRow"_s + QString::number(position));
        QCOMPARE(stored == "True"_L1, before.at(position - 1).startsWith(u'/'));
    }
}

void tst_Keyboard::lastWindowGivesTheKeyboardToTheArea()
{
    m_session->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_session->windows(), 0);
    QVERIFY(!isOnAGrip());
    QTRY_COMPARE(QApplication::focusWidget(), m_session->frame->findChild<MdiArea *>());
}

void tst_Keyboard::hiddenWithoutAWindow()
{
    m_session->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_session->windows(), 0);
    focus(u"brwURL1"_s);
    m_session->frame->run(u"mnuViewToolBarAddressBar"_s);
    QVERIFY(!isOnAGrip());
    QCOMPARE(QApplication::focusWidget(), m_session->frame->findChild<MdiArea *>());
}

void tst_Keyboard::windowsThatComeBackHaveTheKeyboard_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::newRow("restore") << QStringList{u"mnuWindowRestoreAll"_s};
    QTest::newRow("minimize, restore")
        << QStringList{u"mnuWindowMinimizeAll"_s, u"mnuWindowRestoreAll"_s};
    QTest::newRow("restore twice") << QStringList{
        u"mnuWindowMinimizeAll"_s, u"mnuWindowRestoreAll"_s, u"mnuWindowRestoreAll"_s};
    QTest::newRow("cascade") << QStringList{u"mnuWindowCascade"_s};
    QTest::newRow("tile") << QStringList{u"mnuWindowTileHorizontal"_s};
    QTest::newRow("all") << QStringList{u"mnuWindowMinimizeAll"_s, u"mnuWindowCascade"_s,
                                        u"mnuWindowTileVertical"_s, u"mnuWindowRestoreAll"_s,
                                        u"mnuWindowTileVertical"_s};
}

void tst_Keyboard::windowsThatComeBackHaveTheKeyboard()
{
    QFETCH(QStringList, items);
    openSecond();
    for (const QString &item : items)
        m_session->choose(item.toLatin1().constData());
    QVERIFY(!m_session->active()->isMinimized());
    QTRY_VERIFY(pageHasKeyboard());
    typeIntoThePage();
}

void tst_Keyboard::restoreAllLeavesTheAddressAlone()
{
    openSecond();
    focus(u"brwURL1"_s);
    const QWidget *had = QApplication::focusWidget();
    m_session->choose("mnuWindowMinimizeAll");
    m_session->choose("mnuWindowRestoreAll");
    QCoreApplication::processEvents();
    QCOMPARE(QApplication::focusWidget(), had);
}

void tst_Keyboard::closedWindowHandsTheKeyboardOn()
{
    const BrowserWindow *first = m_session->active();
    openSecond();
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->active(), first);
    QTRY_VERIFY(pageHasKeyboard());
    typeIntoThePage();
}

void tst_Keyboard::minimizedPageHasNoKeyboard()
{
    BrowserWindow *window = m_session->active();
    m_session->choose("mnuWindowMinimizeAll");
    QVERIFY(!isOnAGrip());
    QVERIFY(!pageHasKeyboard());
    window->showNormal();
    QTRY_VERIFY(pageHasKeyboard());
    typeIntoThePage();
}

void tst_Keyboard::minimizedPageGetsNoKeyboard_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"F6", "Shift+F6", "Enter", "find", "menu bar"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

/// A key that is typed next would reach a page that nobody sees.
void tst_Keyboard::minimizedPageGetsNoKeyboard()
{
    QFETCH(QString, way);
    const QWidget *page = m_session->active()->browser()->widget();
    if (way == "menu bar"_L1)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Alt);
    m_session->frame->run(u"mnuWindowMinimizeAll"_s);
    if (way == "menu bar"_L1) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    } else if (way == "Enter"_L1) {
        focus(u"brwURL1"_s);
        type(Qt::Key_Return);
    } else if (way == "find"_L1) {
        m_session->frame->run(u"mnuEditFind"_s);
    } else {
        // All the way around, past where the page would be.
        for (int i = 0; i < 12; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6,
                            way == "F6"_L1 ? Qt::NoModifier : Qt::ShiftModifier);
            QVERIFY(QApplication::focusWidget() && QApplication::focusWidget()->isVisible());
        }
    }
    const auto isSeen = [] {
        const QWidget *focus = QApplication::focusWidget();
        return focus && focus->isVisible();
    };
    QTRY_VERIFY(isSeen());
    QVERIFY(!isOnAGrip());
    QVERIFY(!page->isAncestorOf(QApplication::focusWidget()));
}

ORVANE_ENGINE_TEST_MAIN(tst_Keyboard)
#include "tst_keyboard.moc"
