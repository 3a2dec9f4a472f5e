#include <QAbstractButton>
#include <QBuffer>
#include <QImage>
#include <QMenu>
#include <QWindow>

#include "../Session.h"
#include "Answer.h"
#include "EngineTest.h"
#include "OpenAddressDialog.h"
#include "ProgramInfo.h"
#include "SourceWindow.h"
#include "TextRules.h"

using namespace Qt::StringLiterals;

/// Opening, closing, reloading and switching windows, in the whole program with real pages.
class tst_WindowCommands : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void openUrlOpensInTheActiveWindow();
    void openUrlWithoutAWindowOpensOneOnce();
    void closeLeavesTheSourceWindow();
    void closeAllTakesTheSourceWindow();
    void closeAllLeavesAnOpenModalDialog();
    void closeAllLeavesClosedDialogsClosed();
    void closeNeverPrompts();
    void fileItemsWithoutAWindow();
    void exitAsks();
    void controlNOpensOneWindow_data();
    void controlNOpensOneWindow();
    void controlShiftNDoesNothing();

    void navigationItemsFollowTheWindows();
    void startPageOpensInTheActiveWindow();
    void startPageWithoutASetting();
    void refreshAllReloadsEveryPage();
    void stopAllStopsEveryPage();
    void searchTheWebTogglesTheSideBar();

    void titleOnTheTab();
    void middleClickClosesItsWindow();
    void rightReleaseListsTheWindows();
    void tabClickShowsTheAddressOverUnsentText();
    void tabOfAMinimizedWindow();
    void pageIconOnTabAndWindow();
    void windowItemsWithoutAWindow();
    void keysKeepAllInStep_data();
    void keysKeepAllInStep();
    void controlF4Closes();
    void captionOfTheFrame();
    void titleIsShownAsItStands_data();
    void titleIsShownAsItStands();
    void lastWindowLeavesTheAddress();
    void openMenuKeepsTheTypedText();
    void unsentTextSurvivesAPageThatFinishes();
    void manyWindowsCloseAtOnce();
    void acceleratorsInTheAddressField();

private:
    QString url(const char *path) const { return m_session->server.url(QString::fromLatin1(path)); }
    void openMenu(const char *name) const;
    void openSecond(const char *path);
    QStringList enabledOf(const QStringList &names) const;
    QWidget *tab(const BrowserWindow *window) const
    {
        return m_session->tabs().tab(window->tabKey());
    }

    std::unique_ptr<Session> m_session;
};

void tst_WindowCommands::init()
{
    m_session = std::make_unique<Session>();
    m_session->start(url("/one"));
    QTRY_VERIFY(m_session->shows(url("/one")));
}

/// Opens a menu as a user does, and closes it again.
void tst_WindowCommands::openMenu(const char *name) const
{
    auto *menu = m_session->frame->findChild<QMenu *>(QString::fromLatin1(name));
    QVERIFY(menu);
    menu->popup(m_session->frame->mapToGlobal(QPoint(10, 10)));
    menu->close();
}

void tst_WindowCommands::openSecond(const char *path)
{
    m_session->frame->openBrowserWindow(url(path), WindowState::AsOthers);
    QTRY_VERIFY(m_session->shows(url(path)));
}

QStringList tst_WindowCommands::enabledOf(const QStringList &names) const
{
    QStringList result;
    for (const QString &name : names) {
        if (m_session->frame->menuItem(name)->isEnabled())
            result += name;
    }
    return result;
}

void tst_WindowCommands::openUrlOpensInTheActiveWindow()
{
    m_session->choose("mnuFileOpen");
    const QList<QWidget *> dialogs = Forms::named("frmOpenURL");
    QCOMPARE(dialogs.size(), 1);
    auto *field = dialogs.first()->findChild<QLineEdit *>(u"txtOpenURL"_s);
    field->setText(url("/two"));
    QTest::keyClick(field, Qt::Key_Return);
    QTRY_VERIFY(m_session->shows(url("/two")));
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(m_session->server.count("/two"), 1);
    QTRY_VERIFY(Forms::named("frmOpenURL").isEmpty());
}

void tst_WindowCommands::openUrlWithoutAWindowOpensOneOnce()
{
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    m_session->choose("mnuFileOpen");
    auto *field = Forms::named("frmOpenURL").first()->findChild<QLineEdit *>(u"txtOpenURL"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(m_session->active()->isMaximized());
    QTRY_VERIFY(Forms::named("frmOpenURL").isEmpty());
}

void tst_WindowCommands::closeLeavesTheSourceWindow()
{
    SourceWindow::openOn(u"<p>"_s, url("/one"));
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->windows(), 0);
    QCOMPARE(Forms::named("frmSource").size(), 1);
    QVERIFY(Forms::named("frmSource").first()->isVisible());
    m_session->frame->run(u"mnuFileClose"_s);
    QCOMPARE(Forms::named("frmSource").size(), 1);
}

void tst_WindowCommands::closeAllTakesTheSourceWindow()
{
    openSecond("/two");
    m_session->choose("mnuWindowMinimizeAll");
    SourceWindow::openOn(u"<p>"_s, url("/one"));
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(Forms::named("frmSource").isEmpty());
    QCOMPARE(m_session->windows(), 0);
    QVERIFY(m_session->tabs().keys().isEmpty());
    QCOMPARE(Forms::all(), QList<QWidget *>{m_session->frame.get()});
    QVERIFY(m_session->frame->isVisible());
    QVERIFY(!m_session->frame->isMinimized());
}

void tst_WindowCommands::closeAllLeavesAnOpenModalDialog()
{
    m_session->choose("mnuFileOpen");
    m_session->frame->run(u"mnuFileCloseAll"_s);
    QTRY_COMPARE(m_session->windows(), 0);
    QCOMPARE(Forms::named("frmOpenURL").size(), 1);
    QVERIFY(Forms::named("frmOpenURL").first()->isVisible());
}

/// A dialog is a loaded form until it is deleted, a turn of the event loop after it was closed.
void tst_WindowCommands::closeAllLeavesClosedDialogsClosed()
{
    m_session->choose("mnuHelpAbout");
    m_session->choose("mnuFileOpen");
    const QPointer<QWidget> about = Forms::named("frmAbout").value(0);
    const QPointer<QWidget> openUrl = Forms::named("frmOpenURL").value(0);
    QVERIFY(about && openUrl);
    openUrl->close();
    about->close();
    QVERIFY(Forms::all().contains(about) && Forms::all().contains(openUrl));
    m_session->frame->run(u"mnuFileCloseAll"_s);
    QVERIFY(!about || !about->isVisible());
    QVERIFY(!openUrl || !openUrl->isVisible());
    QTRY_VERIFY(!about && !openUrl);
    QTRY_COMPARE(Forms::all(), QList<QWidget *>{m_session->frame.get()});
}

void tst_WindowCommands::closeNeverPrompts()
{
    m_session->server.page("/leave",
                           "<title>stay</title><script>onbeforeunload = e => "
                           "{ e.preventDefault(); return e.returnValue = 'stay' }</script>");
    openSecond("/leave");
    QTest::mouseClick(m_session->active()->browser()->widget(), Qt::LeftButton);
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->windows(), 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_WindowCommands::fileItemsWithoutAWindow()
{
    const QStringList items{u"mnuFileProfilesSave"_s, u"mnuFileClose"_s, u"mnuFileCloseAll"_s};
    const QStringList never{u"mnuFileSaveAs"_s, u"mnuFileProperties"_s, u"mnuFilePrint"_s,
                            u"mnuFilePrintPreview"_s, u"mnuFilePageSetup"_s};
    openMenu("mnuFile");
    QCOMPARE(enabledOf(items), items);
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    openMenu("mnuFile");
    QCOMPARE(enabledOf(items + never), QStringList());
    const QStringList always{u"mnuFileNewCurrent"_s,  u"mnuFileNewBlankPage"_s,
                             u"mnuFileNewHomePage"_s, u"mnuFileOpen"_s,
                             u"mnuFileProfiles"_s,    u"mnuFileExit"_s};
    QCOMPARE(enabledOf(always), always);
}

void tst_WindowCommands::exitAsks()
{
    m_session->folder.setSetting(u"Settings"_s, u"AskOnExit"_s, u"1"_s);
    Answer no(QMessageBox::No);
    m_session->choose("mnuFileExit");
    QCOMPARE(no.count(), 1);
    QVERIFY(m_session->frame->isVisible());
    QCOMPARE(m_session->windows(), 1);
    Answer yes(QMessageBox::Yes);
    m_session->choose("mnuFileExit");
    QCOMPARE(yes.count(), 1);
    QVERIFY(!m_session->frame->isVisible());
    QCOMPARE(m_session->windows(), 0);
}

void tst_WindowCommands::controlNOpensOneWindow_data()
{
    QTest::addColumn<QString>("receiver");
    for (const char *receiver : {"frame", "page", "window"})
        QTest::newRow(receiver) << QString::fromLatin1(receiver);
}

void tst_WindowCommands::controlNOpensOneWindow()
{
    QFETCH(QString, receiver);
    QWidget *target = m_session->frame.get();
    if (receiver == "page"_L1)
        target = m_session->active()->browser()->widget()->focusProxy();
    else if (receiver == "window"_L1)
        target = m_session->active();
    QVERIFY(target);
    m_session->server.forgetRequests();
    QTest::keyClick(target, Qt::Key_N, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(m_session->shows(url("/one")));
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(m_session->tabs().keys().size(), 2);
}

void tst_WindowCommands::controlShiftNDoesNothing()
{
    QTest::keyClick(m_session->frame.get(), Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(m_session->active(), Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    m_session->choose("mnuNavigationRefresh");
    QTRY_COMPARE(m_session->server.count("/one"), 2);
    QCOMPARE(m_session->windows(), 1);
}

void tst_WindowCommands::navigationItemsFollowTheWindows()
{
    const QStringList items{u"mnuNavigationBackwards"_s, u"mnuNavigationForwards"_s,
                            u"mnuNavigationStop"_s,      u"mnuNavigationStopAll"_s,
                            u"mnuNavigationRefresh"_s,   u"mnuNavigationRefreshAll"_s};
    const QStringList others{u"mnuNavigationStartPage"_s, u"mnuNavigationSearchTheWeb"_s};
    openMenu("mnuNavigation");
    QCOMPARE(enabledOf(items), items);
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    openMenu("mnuNavigation");
    QCOMPARE(enabledOf(items), QStringList());
    QCOMPARE(enabledOf(others), others);
    for (const QString &item : items)
        m_session->frame->run(item);
    QCOMPARE(m_session->windows(), 0);
}

void tst_WindowCommands::startPageOpensInTheActiveWindow()
{
    m_session->choose("mnuNavigationStartPage");
    QTRY_VERIFY(m_session->shows(url("/home")));
    QCOMPARE(m_session->windows(), 1);
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    m_session->choose("mnuNavigationStartPage");
    QVERIFY(m_session->active()->isMaximized());
    QTRY_VERIFY(m_session->shows(url("/home")));
}

void tst_WindowCommands::startPageWithoutASetting()
{
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    m_session->folder.writeSettings("[Settings]\r\nAskOnExit=0\r\n");
    m_session->choose("mnuNavigationStartPage");
    QCOMPARE(m_session->active()->windowTitle(), ProgramInfo::homeUrl());
}

void tst_WindowCommands::refreshAllReloadsEveryPage()
{
    openSecond("/two");
    SourceWindow *source = SourceWindow::openOn(u"<p>"_s, url("/one"));
    m_session->server.forgetRequests();
    m_session->choose("mnuNavigationRefreshAll");
    QTRY_COMPARE(m_session->server.count("/one"), 1);
    QTRY_COMPARE(m_session->server.count("/two"), 1);
    QVERIFY(source->isVisible());
}

void tst_WindowCommands::stopAllStopsEveryPage()
{
    TestServer::Reply slow;
    slow.silent = true;
    for (const char *path : {"/slow", "/slower"}) {
        m_session->server.reply(path, slow);
        m_session->frame->openBrowserWindow(url(path), WindowState::AsOthers);
    }
    const QList<BrowserWindow *> windows = browserForms();
    QTRY_COMPARE(m_session->server.count("/slow"), 1);
    QTRY_COMPARE(m_session->server.count("/slower"), 1);
    QVERIFY(windows.at(1)->browser()->isBusy());
    QVERIFY(windows.at(2)->browser()->isBusy());
    m_session->choose("mnuNavigationStopAll");
    QTRY_VERIFY(!windows.at(1)->browser()->isBusy());
    QTRY_VERIFY(!windows.at(2)->browser()->isBusy());
}

void tst_WindowCommands::searchTheWebTogglesTheSideBar()
{
    auto *bar = m_session->frame->findChild<QWidget *>(u"SearchBar1"_s);
    QVERIFY(bar);
    const bool before = bar->isVisible();
    m_session->choose("mnuNavigationSearchTheWeb");
    QCOMPARE(bar->isVisible(), !before);
    QCOMPARE(m_session->item("mnuViewSearchBar")->isChecked(), !before);
    m_session->choose("mnuNavigationSearchTheWeb");
    QCOMPARE(bar->isVisible(), before);
}

void tst_WindowCommands::titleOnTheTab()
{
    const QString key = m_session->active()->tabKey();
    QTRY_COMPARE(m_session->tabs().caption(key), u"The Quick ..."_s);
    QCOMPARE(tab(m_session->active())->toolTip(), u"the quick brown fox"_s);
}

void tst_WindowCommands::middleClickClosesItsWindow()
{
    BrowserWindow *first = m_session->active();
    openSecond("/two");
    BrowserWindow *second = m_session->active();
    QTest::mouseClick(tab(first), Qt::MiddleButton);
    QTRY_COMPARE(m_session->windows(), 1);
    QCOMPARE(m_session->active(), second);
    QCOMPARE(m_session->tabs().keys(), QStringList{second->tabKey()});
    QTest::mouseClick(tab(second), Qt::MiddleButton);
    QTRY_COMPARE(m_session->windows(), 0);
    QVERIFY(m_session->tabs().keys().isEmpty());
}

void tst_WindowCommands::rightReleaseListsTheWindows()
{
    auto *list = m_session->frame->findChild<QMenu *>(u"mnuWindowOpenBrowsers"_s);
    QTest::mouseClick(tab(m_session->active()), Qt::RightButton);
    QVERIFY(list->isVisible());
    QCOMPARE(list->actions().size(), 1);
    QVERIFY(list->actions().first()->isChecked());
    list->close();
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    QTest::mouseClick(&m_session->tabs(), Qt::RightButton);
    QVERIFY(!list->isVisible());
    QVERIFY(!QApplication::activePopupWidget());
}

void tst_WindowCommands::tabClickShowsTheAddressOverUnsentText()
{
    BrowserWindow *first = m_session->active();
    openSecond("/two");
    BrowserWindow *second = m_session->active();
    auto *field = m_session->frame->findChild<QLineEdit *>();
    for (BrowserWindow *wanted : {first, first, second}) {
        field->setFocus();
        QTest::keyClicks(field, u"half an addr"_s);
        QTest::mouseClick(tab(wanted), Qt::LeftButton);
        QCOMPARE(m_session->active(), wanted);
        QCOMPARE(m_session->address().text(), wanted->browser()->locationUrl());
    }
}

void tst_WindowCommands::tabOfAMinimizedWindow()
{
    BrowserWindow *first = m_session->active();
    openSecond("/two");
    m_session->choose("mnuWindowMinimizeAll");
    QVERIFY(first->isMinimized());
    QVERIFY(m_session->active()->isMinimized());
    QTest::mouseClick(tab(first), Qt::LeftButton);
    QCOMPARE(m_session->active(), first);
    QVERIFY(!first->isMinimized());
    QVERIFY(!first->isMaximized());
    QCOMPARE(m_session->address().text(), url("/one"));
}

void tst_WindowCommands::pageIconOnTabAndWindow()
{
    const auto colourOf = [](const QIcon &icon) {
        return QColor(icon.pixmap(QSize(16, 16)).toImage().pixel(8, 8));
    };
    QImage red(16, 16, QImage::Format_RGB32);
    red.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    QVERIFY(red.save(&buffer, "PNG"));
    TestServer::Reply picture;
    picture.body = png;
    picture.type = "image/png";
    m_session->server.reply("/red.png", picture);
    m_session->server.page("/icon", "<title>Red</title><link rel=icon href='/red.png'>");
    auto *button = qobject_cast<QAbstractButton *>(tab(m_session->active()));
    QVERIFY(button);
    QVERIFY2(!button->icon().isNull(), "image 1");
    m_session->frame->navigateActive(url("/icon"));
    QTRY_COMPARE(colourOf(button->icon()), QColor(Qt::red));
    QCOMPARE(colourOf(m_session->active()->windowIcon()), QColor(Qt::red));
    m_session->frame->navigateActive(url("/two"));
    QTRY_VERIFY(m_session->shows(url("/two")));
    QTRY_VERIFY(colourOf(button->icon()) != QColor(Qt::red));
    QVERIFY(!button->icon().isNull());
    QVERIFY(colourOf(m_session->active()->windowIcon()) != QColor(Qt::red));
}

void tst_WindowCommands::windowItemsWithoutAWindow()
{
    const QStringList items{u"mnuWindowMinimizeAll"_s,  u"mnuWindowRestoreAll"_s,
                            u"mnuWindowCascade"_s,      u"mnuWindowTileHorizontal"_s,
                            u"mnuWindowTileVertical"_s, u"mnuWindowCloseAll"_s};
    openMenu("mnuWindow");
    QCOMPARE(enabledOf(items), items);
    m_session->choose("mnuWindowCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    openMenu("mnuWindow");
    QCOMPARE(enabledOf(items), QStringList());
    m_session->choose("mnuWindowNewWindow");
    QTRY_VERIFY(m_session->shows(url("/home")));
    QVERIFY(m_session->active()->isMaximized());
}

void tst_WindowCommands::keysKeepAllInStep_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Ctrl+F6") << Qt::Key_F6;
    QTest::newRow("Ctrl+Tab") << Qt::Key_Tab;
}

void tst_WindowCommands::keysKeepAllInStep()
{
    QFETCH(Qt::Key, key);
    BrowserWindow *first = m_session->active();
    openSecond("/two");
    BrowserWindow *second = m_session->active();
    const auto isInStep = [this](const BrowserWindow *window, const char *path) {
        return m_session->active() == window && m_session->tabs().isPressed(window->tabKey())
            && m_session->address().text() == url(path)
            && m_session->frame->windowTitle() == "Orvane - ["_L1 + window->windowTitle() + u']';
    };
    QTRY_VERIFY(isInStep(second, "/two"));
    QTRY_VERIFY(second->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
    QTRY_VERIFY(isInStep(first, "/one"));
    QTest::keyClick(m_session->frame->findChild<QLineEdit *>(), key,
                    Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_VERIFY(isInStep(second, "/two"));
}

void tst_WindowCommands::controlF4Closes()
{
    BrowserWindow *first = m_session->active();
    openSecond("/two");
    QTest::keyClick(m_session->active()->browser()->widget(), Qt::Key_F4, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 1);
    QTRY_COMPARE(m_session->active(), first);
    QTRY_VERIFY(m_session->tabs().isPressed(first->tabKey()));
    QTRY_COMPARE(m_session->address().text(), url("/one"));
}

void tst_WindowCommands::captionOfTheFrame()
{
    QTRY_COMPARE(m_session->frame->windowTitle(), u"Orvane - [the quick brown fox]"_s);
    m_session->choose("mnuWindowRestoreAll");
    QTRY_COMPARE(m_session->frame->windowTitle(), u"Orvane"_s);
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    QTRY_COMPARE(m_session->frame->windowTitle(), u"Orvane"_s);
}

void tst_WindowCommands::titleIsShownAsItStands_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("inside") << u"a[*] b"_s;
    QTest::newRow("twice") << u"[*][*]"_s;
    // The frame puts the brackets around it.
    QTest::newRow("star") << u"*"_s;
}

void tst_WindowCommands::titleIsShownAsItStands()
{
    QFETCH(QString, title);
    m_session->server.page("/title", "<title>" + title.toLatin1() + "</title>");
    const BrowserWindow *window = m_session->active();
    m_session->frame->navigateActive(url("/title"));
    QTRY_COMPARE(window->windowTitle(), title);
    const QString caption = "Orvane - ["_L1 + title + u']';
    QTRY_COMPARE(m_session->frame->windowTitle(), caption);
    QCOMPARE(m_session->frame->windowHandle()->title(), caption);
    QCOMPARE(tab(window)->toolTip(), title);
    QCOMPARE(m_session->tabs().caption(window->tabKey()), tabCaption(title));
    openMenu("mnuWindowOpenBrowsers");
    QCOMPARE(
        m_session->frame->findChild<QMenu *>(u"mnuWindowOpenBrowsers"_s)->actions().first()->text(),
        title);
}

void tst_WindowCommands::lastWindowLeavesTheAddress()
{
    m_session->choose("mnuFileClose");
    QTRY_VERIFY(!m_session->frame->activeChild());
    QCOMPARE(m_session->address().text(), url("/one"));
}

void tst_WindowCommands::openMenuKeepsTheTypedText()
{
    auto *field = m_session->frame->findChild<QLineEdit *>();
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, u"half"_s);
    field->setSelection(1, 2);
    openMenu("mnuEdit");
    QVERIFY(field->hasFocus());
    QCOMPARE(field->selectedText(), u"al"_s);
    QVERIFY(m_session->address().hasUnsentEdits());
}

void tst_WindowCommands::unsentTextSurvivesAPageThatFinishes()
{
    auto *field = m_session->frame->findChild<QLineEdit *>();
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, u"zzz"_s);
    m_session->active()->browser()->navigate(url("/two"));
    QTRY_VERIFY(m_session->shows(url("/two")));
    QCOMPARE(m_session->address().text(), u"zzz"_s);
    QCOMPARE(m_session->address().listItem(0), url("/two"));
    QTest::keyClick(field, Qt::Key_Escape);
    QCOMPARE(m_session->address().text(), url("/two"));
}

void tst_WindowCommands::manyWindowsCloseAtOnce()
{
    for (int i = 0; i < 30; ++i)
        m_session->frame->openBrowserWindow(u"About:Blank"_s, WindowState::AsOthers);
    QCOMPARE(m_session->windows(), 31);
    QVERIFY(m_session->active()->isMaximized());
    QVERIFY(tab(m_session->active())->visibleRegion().boundingRect()
            == tab(m_session->active())->rect());
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_session->frame->activeChild());
    QCOMPARE(m_session->windows(), 0);
    QVERIFY(m_session->tabs().keys().isEmpty());
}

void tst_WindowCommands::acceleratorsInTheAddressField()
{
    TestServer::Reply slow;
    slow.silent = true;
    m_session->server.reply("/slow", slow);
    QApplication::clipboard()->setText(url("/slow"));
    auto *field = m_session->frame->findChild<QLineEdit *>();
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Insert, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(m_session->server.count("/slow"), 1);
    const BrowserWindow *second = m_session->active();
    QVERIFY(second->browser()->isBusy());
    field->setFocus();
    field->selectAll();
    const QString before = field->text();
    QTest::keyClick(field, Qt::Key_Delete, Qt::ShiftModifier);
    QTRY_VERIFY(!second->browser()->isBusy());
    QVERIFY(!before.isEmpty());
    QCOMPARE(field->text(), before);
}

ORVANE_ENGINE_TEST_MAIN(tst_WindowCommands)
#include "tst_windowcommands.moc"
