// The browser window, with a counting engine in place of the real one.
#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "PageAsks.h"
#include "StatusStrip.h"

#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_browserwindow : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void loadOpensTheStartingAddress();
    void loadWithoutAddressOpensNothing();
    void activationSetsAnEmptyAddressToo();
    void numbersAreUnique();
    void resizePlacesTheControl();
    void minimizedWindowKeepsTheControl();
    void controlNReopensTheAddress();
    void otherKeysDoNothing();
    void statusText();
    void titles_data();
    void titles();
    void hugeTitle();
    void beforeNavigateCopiesTheFlags();
    void blankFirstNavigationIsCancelled_data();
    void blankFirstNavigationIsCancelled();
    void documentIsClearedBeforeTheNext();
    void popupTakesTheRequestedSize();
    void popupOfTheSameSizeStays();
    void onlyTheActiveWindowShowsItsAddress();
    void newWindowIsMadeInPlace();
    void killPopupsRefuses();
    void closingAsks_data();
    void closingAsks();
    void indicators();
    void focusPressesTheTab();
    void pressedTabLeavesTheAddress();
    void activationPressesTheTab();
    void unloadTakesTheTab();
    void closeNeverAsks();
    void coveredWindowsAreHidden();
    void systemMenuHasNoKeys();

private:
    BrowserWindow *open(const QString &url = u"http://one/"_s) { return m_frame->open(url); }
    FakeWebBrowser *engineOf(const BrowserWindow *form)
    {
        return static_cast<FakeWebBrowser *>(form->browser());
    }

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<FakeFrame> m_frame;
};

void tst_browserwindow::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<FakeFrame>();
}

void tst_browserwindow::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    QVERIFY(FakeWebBrowser::made().isEmpty());
}

void tst_browserwindow::loadOpensTheStartingAddress()
{
    auto *form = new BrowserWindow(*m_frame);
    form->startingAddress = u"http://one/"_s;
    m_frame->adopt(form);
    QVERIFY(engineOf(form)->navigated.isEmpty());
    QVERIFY(browserForms().isEmpty());
    form->show();
    QCOMPARE(engineOf(form)->navigated, QStringList{u"http://one/"_s});
    QCOMPARE(form->windowTitle(), u"http://one/"_s);
    QCOMPARE(m_frame->addressText, u"http://one/"_s);
    QVERIFY(form->startingAddress.isEmpty());
    QCOMPARE(m_frame->tabs.tabs.size(), 1);
    QCOMPARE(m_frame->tabs.tabs.first().key, u'X' + QString::number(form->hWnd()));
    QCOMPARE(m_frame->tabs.tabs.first().caption, u"Loading..."_s);
    QCOMPARE(browserForms(), QList<BrowserWindow *>{form});
    QCOMPARE(activeBrowser(*m_frame), form);
    form->hide();
    form->show();
    QCOMPARE(engineOf(form)->navigated.size(), 1);
    QCOMPARE(m_frame->tabs.tabs.size(), 1);
}

void tst_browserwindow::loadWithoutAddressOpensNothing()
{
    const BrowserWindow *form = open({});
    QVERIFY(engineOf(form)->navigated.isEmpty());
    QCOMPARE(m_frame->addressText, QString());
    QCOMPARE(m_frame->tabs.tabs.size(), 1);
}

void tst_browserwindow::activationSetsAnEmptyAddressToo()
{
    BrowserWindow *empty = open({});
    open();
    QCOMPARE(m_frame->addressText, u"http://one/"_s);
    m_frame->area->setActiveSubWindow(empty);
    QTRY_COMPARE(m_frame->addressText, QString());
    // Until it has a page, a window is known by what it was opened on.
    m_frame->area->setActiveSubWindow(browserForms().last());
    QTRY_COMPARE(m_frame->addressText, u"http://one/"_s);
}

void tst_browserwindow::numbersAreUnique()
{
    const int first = open()->hWnd();
    browserForms().first()->unload();
    QVERIFY(open()->hWnd() > first);
}

void tst_browserwindow::resizePlacesTheControl()
{
    BrowserWindow *form = open();
    form->resize(500, 400);
    QTRY_COMPARE(form->widget()->height(), form->contentsRect().height());
    const QRect moved = engineOf(form)->moves.last();
    QCOMPARE(moved.topLeft(), QPoint(0, 0));
    QCOMPARE(moved.width(), form->innerWidth());
    const int strip = form->statusBar()->height();
    QVERIFY(strip >= 17);
    QCOMPARE(moved.height(), form->innerHeight() - strip);
    QCOMPARE(form->statusBar()->geometry().bottom(), form->widget()->rect().bottom());
}

void tst_browserwindow::minimizedWindowKeepsTheControl()
{
    BrowserWindow *form = open();
    form->showMinimized();
    QTRY_VERIFY(form->isMinimized());
    for (const QRect &moved : engineOf(form)->moves)
        QVERIFY(moved.height() >= 0);
    form->showNormal();
    QTRY_VERIFY(!engineOf(form)->moves.isEmpty());
    QTRY_COMPARE(engineOf(form)->moves.last().width(), form->innerWidth());
}

void tst_browserwindow::controlNReopensTheAddress()
{
    BrowserWindow *form = open();
    engineOf(form)->location = u"http://there/"_s;
    QTest::keyClick(form, Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(m_frame->opened.size(), 1);
    QCOMPARE(m_frame->opened.first().url, u"http://there/"_s);
    QCOMPARE(m_frame->opened.first().state, WindowState::AsOthers);
}

void tst_browserwindow::otherKeysDoNothing()
{
    BrowserWindow *form = open();
    QTest::keyClick(form, Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(form, Qt::Key_N);
    QTest::keyClick(form, Qt::Key_M, Qt::ControlModifier);
    QVERIFY(m_frame->opened.isEmpty());
}

void tst_browserwindow::statusText()
{
    const BrowserWindow *form = open();
    engineOf(form)->events->statusTextChange(u"Done"_s);
    QCOMPARE(form->statusBar()->text(), u" Done"_s);
    QCOMPARE(form->statusBar()->accessibleName(), u"Done"_s);
}

void tst_browserwindow::titles_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("tab");
    QTest::newRow("ten") << u"abcdefghij"_s << u"abcdefghij"_s << u"Abcdefghij"_s;
    QTest::newRow("eleven") << u"abcdefghijk"_s << u"abcdefghijk"_s << u"Abcdefghij..."_s;
    QTest::newRow("three blanks") << u"  a   b "_s << u"a   b"_s << u"A  B"_s;
    QTest::newRow("fox") << u"the quick brown fox"_s << u"the quick brown fox"_s
                         << u"The Quick ..."_s;
}

void tst_browserwindow::titles()
{
    QFETCH(QString, title);
    QFETCH(QString, caption);
    QFETCH(QString, tab);
    const BrowserWindow *form = open();
    engineOf(form)->events->titleChange(title);
    QCOMPARE(form->windowTitle(), caption);
    QCOMPARE(m_frame->tabOf(form).caption, tab);
    QCOMPARE(m_frame->tabOf(form).toolTip, caption);
}

void tst_browserwindow::hugeTitle()
{
    const BrowserWindow *form = open();
    engineOf(form)->events->titleChange(QString(1000000, u'x'));
    QVERIFY(form->windowTitle().size() <= 4096);
    QCOMPARE(m_frame->tabOf(form).caption, u"Xxxxxxxxxx..."_s);
}

void tst_browserwindow::beforeNavigateCopiesTheFlags()
{
    const BrowserWindow *form = open();
    m_frame->flags = 10;
    int flags = 0;
    bool cancel = false;
    engineOf(form)->events->beforeNavigate2(u"http://x/"_s, flags, cancel);
    QCOMPARE(flags, 10);
    QVERIFY(!cancel);
}

void tst_browserwindow::blankFirstNavigationIsCancelled_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("holdsDocument");
    QTest::addColumn<bool>("cancelled");
    QTest::newRow("empty, new") << QString() << false << true;
    QTest::newRow("no host, new") << u"http:///"_s << false << true;
    QTest::newRow("blank page, new") << u"about:blank"_s << false << false;
    QTest::newRow("empty, loaded") << QString() << true << false;
    QTest::newRow("no host, loaded") << u"http:///"_s << true << false;
}

void tst_browserwindow::blankFirstNavigationIsCancelled()
{
    QFETCH(QString, url);
    QFETCH(bool, holdsDocument);
    QFETCH(bool, cancelled);
    const BrowserWindow *form = open();
    engineOf(form)->holdsDocument = holdsDocument;
    int flags = 0;
    bool cancel = false;
    engineOf(form)->events->beforeNavigate2(url, flags, cancel);
    QCOMPARE(cancel, cancelled);
}

void tst_browserwindow::documentIsClearedBeforeTheNext()
{
    const BrowserWindow *form = open();
    int flags = 0;
    bool cancel = false;
    engineOf(form)->events->beforeNavigate2(u"http://x/"_s, flags, cancel);
    QCOMPARE(engineOf(form)->cleared, 0);
    engineOf(form)->holdsDocument = true;
    engineOf(form)->events->beforeNavigate2(u"http://x/"_s, flags, cancel);
    QCOMPARE(engineOf(form)->cleared, 1);
}

void tst_browserwindow::popupTakesTheRequestedSize()
{
    BrowserWindow *form = m_frame->open({}, true);
    form->isPopup = true;
    QTRY_VERIFY(form->isMaximized());
    engineOf(form)->move(20, 30, 200, 100);
    int flags = 0;
    bool cancel = false;
    engineOf(form)->events->beforeNavigate2(u"http://popup/"_s, flags, cancel);
    QVERIFY(!form->isPopup);
    QVERIFY(!form->isMaximized());
    QCOMPARE(form->geometry(), QRect(20, 30, 200 + 57, 100 + 59));
    QCOMPARE(m_frame->addressText, u"http://popup/"_s);
    QTRY_COMPARE(engineOf(form)->moves.last().width(), form->innerWidth());
    QCOMPARE(engineOf(form)->moves.last().topLeft(), QPoint(0, 0));
    const QRect before = form->geometry();
    engineOf(form)->move(0, 0, 100, 100);
    engineOf(form)->events->beforeNavigate2(u"http://popup/2"_s, flags, cancel);
    QCOMPARE(form->geometry(), before);
}

void tst_browserwindow::popupOfTheSameSizeStays()
{
    BrowserWindow *form = m_frame->open({}, true);
    form->isPopup = true;
    QTRY_VERIFY(form->isMaximized());
    int flags = 0;
    bool cancel = false;
    engineOf(form)->events->beforeNavigate2(u"http://popup/"_s, flags, cancel);
    QVERIFY(form->isMaximized());
    QVERIFY(!form->isPopup);
}

void tst_browserwindow::onlyTheActiveWindowShowsItsAddress()
{
    const BrowserWindow *behind = open();
    const BrowserWindow *front = open();
    engineOf(behind)->location = u"http://behind/"_s;
    engineOf(front)->location = u"http://front/"_s;
    engineOf(behind)->events->navigateComplete2(u"http://other/"_s);
    engineOf(front)->events->navigateComplete2(u"http://front/"_s);
    QCOMPARE(m_frame->addresses.size(), 2);
    QCOMPARE(m_frame->addresses.at(0).url, u"http://behind/"_s);
    QVERIFY(!m_frame->addresses.at(0).shown);
    QCOMPARE(m_frame->addresses.at(1).url, u"http://front/"_s);
    QVERIFY(m_frame->addresses.at(1).shown);
}

void tst_browserwindow::newWindowIsMadeInPlace()
{
    const BrowserWindow *opener = open();
    m_frame->menuItem(u"mnuToolsScriptErrorSuppress"_s)->setChecked(true);
    WebBrowser *target = nullptr;
    bool cancel = true;
    engineOf(opener)->events->newWindow2(target, cancel);
    QVERIFY(!cancel);
    QCOMPARE(browserForms().size(), 2);
    const BrowserWindow *popup = browserForms().last();
    QCOMPARE(popup->browser(), target);
    QVERIFY(popup->isPopup);
    QVERIFY(popup->isVisible());
    QVERIFY(engineOf(popup)->registered);
    QVERIFY(engineOf(popup)->silent);
    QVERIFY(engineOf(popup)->navigated.isEmpty());
    QCOMPARE(m_frame->tabOf(popup).caption, u"Loading..."_s);
}

void tst_browserwindow::killPopupsRefuses()
{
    const BrowserWindow *opener = open();
    m_frame->menuItem(u"mnuToolsKillPopUps"_s)->setChecked(true);
    m_frame->menuItem(u"mnuToolsSmartPopupKiller"_s)->setChecked(true);
    WebBrowser *target = nullptr;
    bool cancel = false;
    engineOf(opener)->events->newWindow2(target, cancel);
    QVERIFY(cancel);
    QVERIFY(!target);
    QCOMPARE(browserForms().size(), 1);
    QCOMPARE(m_frame->tabs.tabs.size(), 1);
}

void tst_browserwindow::closingAsks_data()
{
    QTest::addColumn<bool>("agree");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void tst_browserwindow::closingAsks()
{
    QFETCH(bool, agree);
    const QPointer<BrowserWindow> form = open();
    bool cancel = false;
    engineOf(form)->events->windowClosing(true, cancel);
    engineOf(form)->events->windowClosing(true, cancel);
    QCOMPARE(browserForms().size(), 1);
    QVERIFY(!QApplication::activeModalWidget());
    const PageQuestionBox *box = PageAsks::shownIn(form);
    QVERIFY(box);
    QCOMPARE(form->findChildren<PageQuestionBox *>().size(), 1);
    QCOMPARE(PageAsks::titleOf(box), u"Allow Window Close?"_s);
    QCOMPARE(PageAsks::textOf(box),
             u"This window is attempting to close itself!\nDo you want to allow this?"_s);
    QCOMPARE(PageAsks::yes(box)->text(), u"Yes"_s);
    QCOMPARE(PageAsks::no(box)->text(), u"No"_s);
    QVERIFY(!box->findChild<QLabel *>(u"lblIcon"_s)->pixmap(Qt::ReturnByValue).isNull());
    PageAsks::press(agree ? PageAsks::yes(box) : PageAsks::no(box));
    if (agree) {
        QTRY_VERIFY(!form);
        QVERIFY(m_frame->tabs.tabs.isEmpty());
    } else {
        QTRY_VERIFY(form->findChildren<PageQuestionBox *>().isEmpty());
        QVERIFY(form && form->isVisible());
        QCOMPARE(m_frame->tabs.tabs.size(), 1);
    }
}

void tst_browserwindow::indicators()
{
    const BrowserWindow *form = open();
    const StatusStrip *strip = form->statusBar();
    QVERIFY(!strip->secureShown() && !strip->privacyShown());
    engineOf(form)->events->setSecureLockIcon(6);
    engineOf(form)->events->privacyImpactedStateChange(true);
    QVERIFY(strip->secureShown() && strip->privacyShown());
    QVERIFY(!strip->secureRect().intersects(strip->privacyRect()));
    engineOf(form)->events->setSecureLockIcon(0);
    engineOf(form)->events->privacyImpactedStateChange(false);
    QVERIFY(!strip->secureShown() && !strip->privacyShown());
}

void tst_browserwindow::focusPressesTheTab()
{
    const BrowserWindow *form = open();
    m_frame->tabs.setPressed(form->tabKey(), false);
    engineOf(form)->location = u"http://one/page"_s;
    engineOf(form)->events->gotFocus();
    QVERIFY(m_frame->tabOf(form).pressed);
    QCOMPARE(m_frame->addressText, u"http://one/page"_s);
}

void tst_browserwindow::pressedTabLeavesTheAddress()
{
    const BrowserWindow *form = open();
    m_frame->tabs.setPressed(form->tabKey(), true);
    m_frame->addressText = u"being typed"_s;
    engineOf(form)->location = u"http://one/page"_s;
    engineOf(form)->events->gotFocus();
    QCOMPARE(m_frame->addressText, u"being typed"_s);
}

void tst_browserwindow::activationPressesTheTab()
{
    BrowserWindow *first = open();
    const BrowserWindow *second = open();
    QTRY_VERIFY(m_frame->tabOf(second).pressed);
    engineOf(first)->location = u"http://first/"_s;
    m_frame->area->setActiveSubWindow(first);
    QTRY_VERIFY(m_frame->tabOf(first).pressed);
    QVERIFY(!m_frame->tabOf(second).pressed);
    QCOMPARE(m_frame->addressText, u"http://first/"_s);
}

void tst_browserwindow::unloadTakesTheTab()
{
    const QPointer<BrowserWindow> form = open();
    const FakeWebBrowser *engine = engineOf(form);
    form->unload();
    QVERIFY(m_frame->tabs.tabs.isEmpty());
    QVERIFY(browserForms().isEmpty());
    QVERIFY(!engine->events);
    form->unload();
    QTRY_VERIFY(!form);
    QVERIFY(m_frame->area->subWindowList().isEmpty());
}

void tst_browserwindow::closeNeverAsks()
{
    const QPointer<BrowserWindow> form = open();
    QVERIFY(form->close());
    QVERIFY(m_frame->tabs.tabs.isEmpty());
    QTRY_VERIFY(!form);
}

void tst_browserwindow::coveredWindowsAreHidden()
{
    BrowserWindow *behind = open();
    BrowserWindow *front = open();
    QTRY_VERIFY(engineOf(behind)->shown && engineOf(front)->shown);
    front->showMaximized();
    QTRY_VERIFY(!engineOf(behind)->shown);
    QVERIFY(engineOf(front)->shown);
    m_frame->area->setActiveSubWindow(behind);
    QTRY_VERIFY(engineOf(behind)->shown);
    QTRY_VERIFY(!engineOf(front)->shown || !behind->isMaximized());
    behind->showNormal();
    QTRY_VERIFY(engineOf(front)->shown);
    front->showMaximized();
    m_frame->area->setActiveSubWindow(front);
    QTRY_VERIFY(!engineOf(behind)->shown);
    front->unload();
    QTRY_VERIFY(engineOf(behind)->shown);
}

void tst_browserwindow::systemMenuHasNoKeys()
{
    const BrowserWindow *form = open();
    const QList<QAction *> actions = form->systemMenu()->actions();
    QVERIFY(!actions.isEmpty());
    for (const QAction *action : actions)
        QVERIFY(action->shortcuts().isEmpty());
}

QTEST_MAIN(tst_browserwindow)
#include "tst_browserwindow.moc"
