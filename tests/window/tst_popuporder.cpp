// In which order a browser window deals with a popup's first navigation, and the maximize catcher.
#include "FakeWebBrowser.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "PopupScene.h"
#include "StatusStrip.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {
const QString address = u"http://popup.example/"_s;
}

class tst_popuporder : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void matchDoesNothingElse();
    void windowThatMayBeClosedIsHeldBack();
    void heldBackWindowIsFitted();
    void withoutAPatternNothingIsHeldBack();
    void windowWithoutANavigationComesUpAtLast();
    void unaskedOneComesUpWhenThereIsSomethingInIt();
    void blockedOneLeavesTheActiveWindowAlone();
    void blockedWindowsThatWereSeenCount();
    void sentToABlockedAddressFromTheFrontGivesBack();
    void firstNavigationFitsTheWindow();
    void filledWindowIsNotFitted();
    void onlyTheFirstNavigationFits();
    void blankFirstNavigationIsCancelled_data();
    void blankFirstNavigationIsCancelled();
    void documentIsClearedAndFlagsAreSet();
    void popupIsSetUp();
    void killPopupsMakesNothing();
    void fiftyUnaskedWindowsThenOneQuestion();
    void answerYesOpensThoseThatWaited();
    void killPopupsHoldsBackThoseThatWaited();
    void answerNoForgetsThem();
    void anotherSiteBeginsAnew();
    void questionGoesWithItsPage();
    void silencedPageOpensNoMore();
    void pagesOwnNavigationsDoNot();
    void namedAddressBeginsAnewWhereverItIs();
    void windowsThatWaitedBeginNothing();
    void windowsOpenedUnaskedShareTheAccount();
    void askedForWindowsAreNotCounted();
    void catcherMovesTwice();
    void catcherIsOffWithoutTheMark();
    void catcherIsStoppedByAPageAfterTheMarkIsGone();

private:
    BrowserWindow *openWindow();
    FakeWebBrowser *engineOf(const BrowserWindow *form)
    {
        return static_cast<FakeWebBrowser *>(form->browser());
    }
    BrowserWindow *openPopup();
    /// The window made last, shown or not.
    static BrowserWindow *newest()
    {
        QWidget *widget = FakeWebBrowser::made().last()->widget();
        while (widget && !qobject_cast<BrowserWindow *>(widget))
            widget = widget->parentWidget();
        return qobject_cast<BrowserWindow *>(widget);
    }
    bool ask(const BrowserWindow *opener, const QString &url = address, bool byUser = false);
    QList<PageQuestionBox *> questions() const;
    bool navigate(const BrowserWindow *form, const QString &url, int *flags = nullptr);

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<PopupScene> m_scene;
};

void tst_popuporder::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
}

void tst_popuporder::cleanup()
{
    m_scene.reset();
    m_engine.reset();
}

BrowserWindow *tst_popuporder::openWindow()
{
    BrowserWindow *form = m_scene->frame.open(u"http://opener.example/"_s);
    form->resize(600, 400);
    return form;
}

/// One request of the page; true when it got a window.
bool tst_popuporder::ask(const BrowserWindow *opener, const QString &url, bool byUser)
{
    engineOf(opener)->request = {url, byUser};
    WebBrowser *target = nullptr;
    bool cancel = false;
    engineOf(opener)->events->newWindow2(target, cancel);
    return target && !cancel;
}

BrowserWindow *tst_popuporder::openPopup()
{
    BrowserWindow *opener = openWindow();
    BrowserWindow *popup = ask(opener, address, true) ? newest() : nullptr;
    if (!popup)
        return nullptr;
    popup->resize(600, 400);
    engineOf(popup)->moves.clear();
    return popup;
}

QList<PageQuestionBox *> tst_popuporder::questions() const
{
    QList<PageQuestionBox *> all = m_scene->frame.window()->findChildren<PageQuestionBox *>();
    all.removeIf([](const PageQuestionBox *each) { return each->isHidden(); });
    return all;
}

bool tst_popuporder::navigate(const BrowserWindow *form, const QString &url, int *flags)
{
    int own = -1;
    bool cancel = false;
    engineOf(form)->events->beforeNavigate2(url, flags ? *flags : own, cancel);
    return !cancel;
}

void tst_popuporder::matchDoesNothingElse()
{
    m_scene->smart();
    m_scene->block(u"*popup*"_s);
    QPointer<BrowserWindow> popup = openPopup();
    QVERIFY(popup);
    FakeWebBrowser *engine = engineOf(popup);
    engine->holdsDocument = true;
    engine->widget()->setGeometry(10, 10, 50, 50);
    QVERIFY(popup->isHidden());
    m_scene->frame.flags = 10;
    int flags = -1;
    QVERIFY(!navigate(popup, address, &flags));
    QVERIFY(popup->isUnloaded());
    QVERIFY(popup->isPopup);
    QVERIFY(engine->moves.isEmpty());
    QCOMPARE(engine->cleared, 0);
    QCOMPARE(flags, -1);
    QVERIFY(!m_scene->frame.addressTexts.contains(address));
    QCOMPARE(m_scene->frame.tabs.tabs.size(), 1);
    QVERIFY(!engine->events);
    QTRY_VERIFY(!popup);
    QTRY_COMPARE(FakeWebBrowser::made().size(), 1);
}

void tst_popuporder::windowThatMayBeClosedIsHeldBack()
{
    m_scene->smart();
    m_scene->block(u"*advert*"_s);
    BrowserWindow *opener = openWindow();
    const QSignalSpy activated(m_scene->frame.area, &QMdiArea::subWindowActivated);
    QVERIFY(ask(opener, address, true));
    BrowserWindow *popup = newest();
    QVERIFY(popup != opener);
    QVERIFY(popup->isHidden());
    QCOMPARE(m_scene->frame.activeChild(), opener);
    QCOMPARE(m_scene->frame.tabs.tabs.size(), 1);
    QCOMPARE(activated.size(), 0);
    QVERIFY(navigate(popup, address));
    QVERIFY(popup->isVisible());
    QCOMPARE(m_scene->frame.activeChild(), popup);
    QCOMPARE(m_scene->frame.tabOf(popup).caption, u"Loading..."_s);
    QVERIFY(!popup->isPopup);
}

void tst_popuporder::heldBackWindowIsFitted()
{
    m_scene->smart();
    m_scene->block(u"*advert*"_s);
    BrowserWindow *opener = openWindow();
    opener->showMaximized();
    QVERIFY(ask(opener, address, true));
    BrowserWindow *popup = newest();
    engineOf(popup)->widget()->setGeometry(12, 34, 300, 200);
    QVERIFY(navigate(popup, address));
    QVERIFY(!popup->isMaximized());
    QCOMPARE(popup->geometry(), QRect(12, 34, 300 + 57, 200 + 59));
    QCOMPARE(engineOf(popup)->moves.last().topLeft(), QPoint(0, 0));
    QCOMPARE(engineOf(popup)->moves.last().width(), popup->innerWidth());

    m_scene->frame.area->setActiveSubWindow(opener);
    opener->showMaximized();
    QVERIFY(ask(opener, address, true));
    BrowserWindow *other = newest();
    QVERIFY(navigate(other, address));
    QVERIFY(other->isMaximized());
}

void tst_popuporder::withoutAPatternNothingIsHeldBack()
{
    m_scene->smart();
    m_scene->block(u"\r\n\r\n"_s);
    QVERIFY(ask(openWindow()));
    QVERIFY(newest()->isVisible());
    m_scene->block(u"*advert*"_s);
    m_scene->smart(false);
    QVERIFY(ask(openWindow()));
    QVERIFY(newest()->isVisible());
}

void tst_popuporder::windowWithoutANavigationComesUpAtLast()
{
    m_scene->smart();
    m_scene->block(u"*advert*"_s);
    QVERIFY(ask(openWindow(), u"about:blank#blocked"_s, true));
    BrowserWindow *popup = newest();
    QVERIFY(popup->isHidden());
    QTRY_VERIFY(popup->isVisible());
    QCOMPARE(m_scene->frame.activeChild(), popup);
    QTRY_COMPARE(m_scene->frame.tabOf(popup).caption, u"About:blan..."_s);
    QVERIFY(popup->isPopup);
}

void tst_popuporder::unaskedOneComesUpWhenThereIsSomethingInIt()
{
    m_scene->smart();
    m_scene->block(u"*advert*"_s);
    BrowserWindow *opener = openWindow();
    QVERIFY(ask(opener, u"about:blank#blocked"_s, false));
    BrowserWindow *popup = newest();
    engineOf(popup)->markup = u"<html><head></head><body></body></html>"_s;
    QTRY_VERIFY(engineOf(popup)->markupAsked > 1);
    QVERIFY(popup->isHidden());
    QCOMPARE(m_scene->frame.activeChild(), opener);
    engineOf(popup)->markup = u"<html><head></head><body>text</body></html>"_s;
    QTRY_VERIFY(popup->isVisible());
    QCOMPARE(m_scene->frame.activeChild(), popup);
    QVERIFY(popup->isPopup);
}

/// The area of inner windows activates another one when its newest goes, were it ever shown or not.
void tst_popuporder::blockedOneLeavesTheActiveWindowAlone()
{
    m_scene->smart();
    m_scene->block(u"*advert*"_s);
    openWindow();
    BrowserWindow *opener = openWindow();
    openWindow();
    m_scene->frame.area->setActiveSubWindow(opener);
    const QSignalSpy activated(m_scene->frame.area, &QMdiArea::subWindowActivated);
    for (const bool byUser : {true, false}) {
        QVERIFY(ask(opener, address, byUser));
        const QPointer<BrowserWindow> popup = newest();
        QVERIFY(!navigate(popup, u"http://advert.example/"_s));
        QTRY_VERIFY(!popup);
        QCOMPARE(m_scene->frame.activeChild(), opener);
    }
    QCOMPARE(activated.size(), 0);
}

void tst_popuporder::blockedWindowsThatWereSeenCount()
{
    m_scene->smart();
    m_scene->block(u"*advert*"_s);
    const BrowserWindow *opener = openWindow();
    for (int i = 0; i < 60; ++i) {
        QVERIFY(ask(opener));
        QVERIFY(!navigate(newest(), u"http://advert.example/"_s));
    }
    // One that is seen, and then sent to a blocked address, and one that only is sent there.
    QVERIFY(ask(opener, u"about:blank#blocked"_s));
    const QPointer<BrowserWindow> popup = newest();
    engineOf(popup)->markup = u"<html><head></head><body>text</body></html>"_s;
    QTRY_VERIFY(popup->isVisible());
    QVERIFY(!navigate(popup, u"http://advert.example/"_s));
    m_scene->smart(false);
    int opened = 0;
    while (opened < 60 && ask(opener))
        ++opened;
    QCOMPARE(opened, 49);
}

void tst_popuporder::sentToABlockedAddressFromTheFrontGivesBack()
{
    m_scene->smart();
    m_scene->block(u"*advert*"_s);
    openWindow();
    BrowserWindow *opener = openWindow();
    openWindow();
    m_scene->frame.area->setActiveSubWindow(opener);
    QVERIFY(ask(opener, u"about:blank#blocked"_s, true));
    const QPointer<BrowserWindow> popup = newest();
    QTRY_COMPARE(m_scene->frame.activeChild(), popup.data());
    QVERIFY(!navigate(popup, u"http://advert.example/"_s));
    QTRY_VERIFY(!popup);
    QTRY_COMPARE(m_scene->frame.activeChild(), opener);
}

void tst_popuporder::firstNavigationFitsTheWindow()
{
    BrowserWindow *popup = openPopup();
    QVERIFY(popup);
    popup->showMaximized();
    engineOf(popup)->widget()->setGeometry(12, 34, 300, 200);
    QVERIFY(navigate(popup, address));
    QVERIFY(!popup->isMaximized());
    QCOMPARE(popup->geometry(), QRect(12, 34, 300 + 57, 200 + 59));
    QCOMPARE(engineOf(popup)->moves.last().topLeft(), QPoint(0, 0));
    QCOMPARE(engineOf(popup)->moves.last().width(), popup->innerWidth());
    QCOMPARE(m_scene->frame.addressText, address);
    QVERIFY(!popup->isPopup);
}

void tst_popuporder::filledWindowIsNotFitted()
{
    BrowserWindow *popup = openPopup();
    QVERIFY(popup);
    popup->layOut();
    const QRect before = popup->geometry();
    QVERIFY(navigate(popup, address));
    QCOMPARE(popup->geometry(), before);
    QVERIFY(!engineOf(popup)->moves.isEmpty());
}

void tst_popuporder::onlyTheFirstNavigationFits()
{
    BrowserWindow *popup = openPopup();
    QVERIFY(popup);
    QVERIFY(navigate(popup, address));
    const QRect before = popup->geometry();
    engineOf(popup)->widget()->setGeometry(12, 34, 300, 200);
    m_scene->frame.addressText.clear();
    QVERIFY(navigate(popup, address));
    QCOMPARE(popup->geometry(), before);
    QCOMPARE(engineOf(popup)->widget()->geometry(), QRect(12, 34, 300, 200));
    QCOMPARE(m_scene->frame.addressText, QString());
}

void tst_popuporder::blankFirstNavigationIsCancelled_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("holdsDocument");
    QTest::addColumn<bool>("proceeds");
    QTest::newRow("empty") << QString() << false << false;
    QTest::newRow("no host") << u"http:///"_s << false << false;
    QTest::newRow("empty, document there") << QString() << true << true;
    QTest::newRow("no host, document there") << u"http:///"_s << true << true;
    QTest::newRow("about:blank") << u"about:blank"_s << false << true;
}

void tst_popuporder::blankFirstNavigationIsCancelled()
{
    QFETCH(const QString, url);
    QFETCH(const bool, holdsDocument);
    m_scene->smart();
    m_scene->block(u"*popup*"_s);
    BrowserWindow *popup = openPopup();
    QVERIFY(popup);
    engineOf(popup)->holdsDocument = holdsDocument;
    QTEST(navigate(popup, url), "proceeds");
    QVERIFY(!popup->isUnloaded());
    QVERIFY(!popup->isPopup);
    QVERIFY(popup->isVisible());
}

void tst_popuporder::documentIsClearedAndFlagsAreSet()
{
    BrowserWindow *popup = openPopup();
    QVERIFY(popup);
    engineOf(popup)->holdsDocument = true;
    m_scene->frame.flags = 10;
    int flags = 0;
    QVERIFY(navigate(popup, address, &flags));
    QCOMPARE(engineOf(popup)->cleared, 1);
    QCOMPARE(flags, 10);
}

void tst_popuporder::popupIsSetUp()
{
    m_scene->check(u"mnuToolsScriptErrorSuppress"_s, true);
    BrowserWindow *popup = openPopup();
    QVERIFY(popup);
    QVERIFY(popup->isPopup);
    QVERIFY(popup->startingAddress.isEmpty());
    QVERIFY(engineOf(popup)->registered);
    QVERIFY(engineOf(popup)->silent);
    QVERIFY(engineOf(popup)->navigated.isEmpty());
    QCOMPARE(m_scene->frame.tabOf(popup).caption, u"Loading..."_s);
}

void tst_popuporder::killPopupsMakesNothing()
{
    m_scene->kill();
    m_scene->smart();
    m_scene->block(u"*"_s);
    const BrowserWindow *opener = openWindow();
    QVERIFY(!ask(opener, address, true));
    for (int i = 0; i < 1000; ++i)
        QVERIFY(!ask(opener));
    QCOMPARE(FakeWebBrowser::made().size(), 1);
    QVERIFY(questions().isEmpty());
}

void tst_popuporder::fiftyUnaskedWindowsThenOneQuestion()
{
    const BrowserWindow *opener = openWindow();
    for (int i = 0; i < 50; ++i)
        QVERIFY(ask(opener));
    QVERIFY(questions().isEmpty());
    for (int i = 0; i < 200; ++i)
        QVERIFY(!ask(opener));
    QCOMPARE(questions().size(), 1);
    QVERIFY(opener->isAncestorOf(questions().first()));
    QCOMPARE(browserForms().size(), 51);
}

void tst_popuporder::answerYesOpensThoseThatWaited()
{
    const BrowserWindow *opener = openWindow();
    for (int i = 0; i < 53; ++i)
        ask(opener, address + QString::number(i));
    QCOMPARE(browserForms().size(), 51);
    PageAsks::press(PageAsks::yes(questions().first()));
    QTRY_COMPARE(browserForms().size(), 54);
    QCOMPARE(engineOf(browserForms().last())->navigatedForPage, QStringList{address + "52"_L1});
    QVERIFY(browserForms().last()->isPopup);
    QTRY_VERIFY(ask(opener));
    QTRY_VERIFY(questions().isEmpty());
}

void tst_popuporder::killPopupsHoldsBackThoseThatWaited()
{
    const BrowserWindow *opener = openWindow();
    for (int i = 0; i < 53; ++i)
        ask(opener);
    m_scene->kill();
    PageAsks::press(PageAsks::yes(questions().first()));
    // One of those that waited is dealt with in each turn of the event loop.
    int turns = 0;
    QTimer everyTurn;
    connect(&everyTurn, &QTimer::timeout, this, [&turns] { ++turns; });
    everyTurn.start(0);
    QTRY_VERIFY(turns > 10);
    m_scene->kill(false);
    QVERIFY(ask(opener));
    QCOMPARE(browserForms().size(), 52);
}

void tst_popuporder::answerNoForgetsThem()
{
    const BrowserWindow *opener = openWindow();
    for (int i = 0; i < 53; ++i)
        ask(opener);
    PageAsks::press(PageAsks::no(questions().first()));
    QTRY_VERIFY(questions().isEmpty());
    QVERIFY(!ask(opener));
    QVERIFY(questions().isEmpty());
    QVERIFY(ask(opener, address, true));
    QCOMPARE(browserForms().size(), 52);
}

void tst_popuporder::anotherSiteBeginsAnew()
{
    const BrowserWindow *opener = openWindow();
    engineOf(opener)->location = u"http://opener.example/"_s;
    engineOf(opener)->events->navigateComplete2(u"http://opener.example/"_s);
    for (int i = 0; i < 51; ++i)
        ask(opener);
    PageAsks::press(PageAsks::no(questions().first()));
    engineOf(opener)->location = u"http://opener.example/other"_s;
    engineOf(opener)->events->navigateComplete2(u"http://opener.example/other"_s);
    QVERIFY(!ask(opener));
    engineOf(opener)->location = u"http://another.example/"_s;
    engineOf(opener)->events->navigateComplete2(u"http://another.example/"_s);
    QVERIFY(ask(opener));
}

/// Who closes the page or its question without an answer has allowed nothing, and refused nothing.
void tst_popuporder::questionGoesWithItsPage()
{
    BrowserWindow *opener = openWindow();
    for (int i = 0; i < 53; ++i)
        ask(opener);
    opener->questions()->pageChanged(QUrl(u"http://opener.example/other"_s));
    QTRY_VERIFY(questions().isEmpty());
    QCOMPARE(browserForms().size(), 51);
    QVERIFY(!ask(opener));
    QCOMPARE(questions().size(), 1);
    PageAsks::press(PageAsks::yes(questions().first()));
    QTRY_COMPARE(browserForms().size(), 52);
}

/// A page that is not heard any more may not ask for windows either.
void tst_popuporder::silencedPageOpensNoMore()
{
    BrowserWindow *opener = openWindow();
    for (int i = 0; i < 50; ++i)
        ask(opener);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!ask(opener));
        opener->questions()->pageChanged(QUrl(u"http://opener.example/"_s + QString::number(i)));
    }
    QVERIFY(!ask(opener));
    QVERIFY(questions().isEmpty());
}

void tst_popuporder::pagesOwnNavigationsDoNot()
{
    const BrowserWindow *opener = openWindow();
    int opened = 0;
    for (int host = 0; host < 5; ++host) {
        engineOf(opener)->arrival = Arrival::ByPage;
        engineOf(opener)->location = u"http://host%1.example/"_s.arg(host);
        engineOf(opener)->events->navigateComplete2(engineOf(opener)->location);
        for (int i = 0; i < 20; ++i)
            opened += ask(opener);
    }
    QCOMPARE(opened, 50);
    QCOMPARE(questions().size(), 1);
}

void tst_popuporder::namedAddressBeginsAnewWhereverItIs()
{
    const BrowserWindow *opener = openWindow();
    QVERIFY(ask(opener));
    const BrowserWindow *popup = browserForms().last();
    for (int i = 0; i < 50; ++i)
        ask(opener);
    PageAsks::press(PageAsks::no(questions().first()));
    for (const BrowserWindow *form : {opener, popup}) {
        QVERIFY(!ask(form));
        engineOf(form)->arrival = Arrival::ByAddress;
        engineOf(form)->location = u"http://opener.example/"_s;
        engineOf(form)->events->navigateComplete2(engineOf(form)->location);
        QVERIFY(ask(form));
    }
}

void tst_popuporder::windowsThatWaitedBeginNothing()
{
    const BrowserWindow *opener = openWindow();
    for (int i = 0; i < 51; ++i)
        ask(opener);
    PageAsks::press(PageAsks::yes(questions().first()));
    QTRY_COMPARE(browserForms().size(), 52);
    QCOMPARE(engineOf(browserForms().last())->navigatedForPage, QStringList{address});
}

void tst_popuporder::windowsOpenedUnaskedShareTheAccount()
{
    const BrowserWindow *opener = openWindow();
    QVERIFY(ask(opener));
    const BrowserWindow *popup = browserForms().last();
    engineOf(popup)->location = u"http://elsewhere.example/"_s;
    engineOf(popup)->events->navigateComplete2(u"http://elsewhere.example/"_s);
    for (int i = 0; i < 49; ++i)
        QVERIFY(ask(popup));
    QVERIFY(!ask(popup));
    QVERIFY(!ask(opener));
    QCOMPARE(questions().size(), 1);
}

void tst_popuporder::askedForWindowsAreNotCounted()
{
    const BrowserWindow *opener = openWindow();
    for (int i = 0; i < 60; ++i)
        QVERIFY(ask(opener, address, true));
    QVERIFY(ask(opener));
    QVERIFY(questions().isEmpty());
}

void tst_popuporder::catcherMovesTwice()
{
    m_scene->check(u"mnuToolsMaximizeCatcher"_s, true);
    BrowserWindow *form = openWindow();
    auto *timer = form->findChild<QTimer *>(u"tmrMaxCatch"_s);
    QVERIFY(timer);
    QVERIFY(!timer->isActive());
    QCOMPARE(timer->interval(), 750);
    engineOf(form)->events->documentComplete(address);
    QVERIFY(timer->isActive());
    engineOf(form)->moves.clear();
    QTRY_VERIFY(!timer->isActive());
    const int height = form->innerHeight() - form->statusBar()->stripHeight();
    const QList<QRect> expected{QRect(3, 3, form->innerWidth(), height),
                                QRect(0, 0, form->innerWidth(), height)};
    QCOMPARE(engineOf(form)->moves, expected);
}

void tst_popuporder::catcherIsOffWithoutTheMark()
{
    BrowserWindow *form = openWindow();
    engineOf(form)->events->documentComplete(address);
    QVERIFY(!form->findChild<QTimer *>(u"tmrMaxCatch"_s)->isActive());
}

void tst_popuporder::catcherIsStoppedByAPageAfterTheMarkIsGone()
{
    const QString item = u"mnuToolsMaximizeCatcher"_s;
    BrowserWindow *form = openWindow();
    const auto *timer = form->findChild<QTimer *>(u"tmrMaxCatch"_s);
    m_scene->frame.menuItem(item)->toggle();
    QVERIFY(m_scene->frame.menuItem(item)->isChecked());
    QVERIFY(!timer->isActive());
    engineOf(form)->events->documentComplete(address);
    m_scene->frame.menuItem(item)->toggle();
    QVERIFY(timer->isActive());
    engineOf(form)->events->documentComplete(address);
    QVERIFY(!timer->isActive());
}

QTEST_MAIN(tst_popuporder)
#include "tst_popuporder.moc"
