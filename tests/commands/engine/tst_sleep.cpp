// Windows that nobody looks at give their pages up and wake in place; closed ones are reopened.
#include <QMenu>
#include <QSpinBox>
#include <QWebEngineView>

#include "../EngineSession.h"
#include "ClosedWindows.h"
#include "DripServer.h"
#include "EngineTest.h"
#include "Factory.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "ProcessMemory.h"
#include "Settings.h"
#include "SleepPicture.h"
#include "SleepWatch.h"
#include "TabButton.h"
#include "WebView.h"

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 minuteMs = 60'000;
constexpr qint64 gigabyte = qint64(1) << 30;
constexpr auto tallPage = "<title>tall</title><body style='height:9000px;background:#2a6'>"
                          "<textarea id=t></textarea>";
}

class tst_Sleep : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unseenWindowSleepsAndWakesInPlace();
    void wakesWhenItComesIntoSight();
    void settingSaysWhen_data();
    void settingSaysWhen();
    void staysAwake_data();
    void staysAwake();
    void seenWindowStaysAwake();
    void typedTextKeepsAwake();
    void soundKeepsAwake();
    void cameraKeepsAwake();
    void typedTextSurvivesSleepByHand();
    void answerToAFormIsNotSentAgain();
    void closedWhileItIsAsked_data();
    void closedWhileItIsAsked();
    void goneToWhileItIsAsked_data();
    void goneToWhileItIsAsked();
    void askedTwiceAtOnce();
    void busyPageStays();
    void realMemoryIsLookedAt();
    void titleStandsForAPageNobodySaw();
    void openQuestionKeepsAwake();
    void runningDownloadKeepsAwake();
    void connectionKeepsAwakeUntilMemoryIsShort();
    void streamOfEventsKeepsAwake_data();
    void streamOfEventsKeepsAwake();
    void connectionBetweenPagesKeepsAwake_data();
    void connectionBetweenPagesKeepsAwake();
    void longestUnseenGoFirst();
    void sleepByHandKeepsTheText();
    void keyWakesTheActiveWindow();
    void sleepAllOthers();
    void itemsFollowTheWindows();
    void picturesStaySmall();
    void againAndAgain();
    void windowsThatBeginAsleepStaySo();
    void reopenedAsItWas();
    void reopenedSleeping();
    void lastTwentyFive();
    void notReopened_data();
    void notReopened();
    void closedWhileItsFirstPageLoads();
    void windowClosedByItsPageIsReopened();
    void emptiedFrameIsFilledAgain();
    void optionsAreKept();

private:
    SleepWatch &watch() const { return *m_session->frame->findChild<SleepWatch *>(); }
    /// Two looks with that long between them.
    void lookAfter(qint64 minutes, qint64 memory = 0)
    {
        watch().look(0, 0);
        watch().look(minutes * minuteMs, memory);
    }
    BrowserWindow *openTall(const QByteArray &name = "tall");
    BrowserWindow *cover();
    static QWebEnginePage *pageOf(const BrowserWindow *window)
    {
        return static_cast<QtWebBrowser *>(window->browser())->page();
    }
    static QString run(const BrowserWindow *window, const QString &code);
    static SleepPicture *pictureOf(const BrowserWindow *window)
    {
        return window->findChild<SleepPicture *>();
    }
    /// A red block in the upper left part of the page.
    static bool showsBlock(const BrowserWindow *window)
    {
        const QImage seen = window->browser()->widget()->grab().toImage();
        const QColor block = seen.pixelColor(seen.width() / 5, seen.height() / 5);
        return block.red() > 160 && block.green() < 70;
    }
    static bool isShown(const BrowserWindow *window)
    {
        return window->browser()->hasDocument() && !window->browser()->isBusy();
    }
    TabButton *tabOf(const BrowserWindow *window) const
    {
        return static_cast<TabButton *>(m_session->tabs().tab(window->tabKey()));
    }
    void goTo(const BrowserWindow *window) const
    {
        QTest::mouseClick(tabOf(window), Qt::LeftButton);
    }
    /// What can be chosen is known when the menu opens.
    void openMenu() const
    {
        for (QMenu *menu : m_session->frame->findChildren<QMenu *>()) {
            if (menu->actions().contains(m_session->item("mnuWindowSleep")))
                emit menu->aboutToShow();
        }
    }
    /// Agreed to where the user is asked.
    void sleepByHand() const
    {
        const BrowserWindow *window = m_session->active();
        choose("mnuWindowSleep");
        QTRY_VERIFY(window->isAsleep() || PageAsks::countIn(window) == 1);
        if (!window->isAsleep())
            PageAsks::press(PageAsks::yes(PageAsks::shownIn(window)));
        QTRY_VERIFY(window->isAsleep());
    }
    void choose(const char *item) const
    {
        openMenu();
        QVERIFY(m_session->item(item)->isEnabled());
        m_session->choose(item);
    }
    /// Types into the page's text field, as its user does.
    static void type(BrowserWindow *window, const QString &text);
    /// The round through the event loop in which those asked fall asleep, or would.
    void settle();
};

void tst_Sleep::init()
{
    ClosedWindows::clear();
    begin();
    m_session->server.page("/tall", tallPage);
    start();
}

void tst_Sleep::cleanup()
{
    finish();
}

QString tst_Sleep::run(const BrowserWindow *window, const QString &code)
{
    auto result = std::make_shared<std::optional<QString>>();
    pageOf(window)->runJavaScript(code,
                                  [result](const QVariant &value) { *result = value.toString(); });
    [&] { QTRY_VERIFY(*result); }();
    return result->value_or(QString());
}

BrowserWindow *tst_Sleep::openTall(const QByteArray &name)
{
    m_session->server.page('/' + name, QByteArray(tallPage).replace("tall</", name + "</"));
    m_session->frame->openBrowserWindow(url(u'/' + QString::fromLatin1(name)),
                                        WindowState::AsOthers);
    BrowserWindow *window = m_session->active();
    [&] { QTRY_VERIFY(isShown(window)); }();
    return window;
}

/// A maximized window over all others.
BrowserWindow *tst_Sleep::cover()
{
    m_session->frame->openBrowserWindow(url(u"/home"_s), WindowState::Maximized);
    BrowserWindow *top = m_session->active();
    [&] {
        QTRY_VERIFY(isShown(top));
        for (const BrowserWindow *window : browserForms())
            QTRY_COMPARE(window->isSeen(), window == top);
    }();
    return top;
}

void tst_Sleep::settle()
{
    // All that were asked have answered by the time that another page has been asked after them.
    bool isAnswered = false;
    m_session->active()->browser()->askToSleep([] { return true; },
                                               [&](bool) { isAnswered = true; });
    [&] { QTRY_VERIFY(isAnswered); }();
    QCoreApplication::processEvents();
}

void tst_Sleep::unseenWindowSleepsAndWakesInPlace()
{
    BrowserWindow *window = openTall();
    window->browser()->navigate(url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    window->browser()->navigate(url(u"/tall"_s));
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
    run(window, u"scrollTo(0, 1500); 1"_s);
    QTRY_COMPARE(window->browser()->pageState(StateDepth::View).scroll, QPoint(0, 1500));
    run(window,
        u"document.body.insertAdjacentHTML('beforeend', '<div style=\"position: fixed; left: 0; "
        u"top: 0; width: 40%; height: 40%; background: #d11\"></div>'); 1"_s);
    QTRY_VERIFY(showsBlock(window));
    const QIcon icon = window->windowIcon();
    const QRect place = window->normalGeometry();
    cover();
    lookAfter(120);
    QTRY_VERIFY(window->isAsleep());
    QVERIFY(!pageOf(window));
    QCOMPARE(window->windowTitle(), u"tall"_s);
    QCOMPARE(window->shownAddress(), url(u"/tall"_s));
    QCOMPARE(window->windowIcon().cacheKey(), icon.cacheKey());
    QVERIFY(tabOf(window)->isAsleep());
    QVERIFY(tabOf(window)->accessibleName().contains("asleep"_L1));
    QVERIFY(pictureOf(window)->size() > 0);
    goTo(window);
    // At once, before its page can have come.
    QVERIFY(pictureOf(window)->isVisible());
    const QImage seen = window->browser()->widget()->grab().toImage();
    const QColor middle = seen.pixelColor(seen.rect().center());
    QVERIFY2(qAbs(middle.red() - 0x22) < 30 && qAbs(middle.green() - 0xaa) < 30,
             qPrintable(middle.name()));
    QVERIFY(showsBlock(window));
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
    QVERIFY(!window->isAsleep());
    QVERIFY(!tabOf(window)->isAsleep());
    QTRY_VERIFY(!pictureOf(window));
    QTRY_COMPARE(run(window, u"String(Math.round(scrollY))"_s), u"1500"_s);
    QCOMPARE(window->normalGeometry(), place);
    QCOMPARE(window->browser()->historySteps().size(), 2);
    QVERIFY(window->browser()->goBack());
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_Sleep::wakesWhenItComesIntoSight()
{
    m_session->active()->showNormal();
    BrowserWindow *window = openTall();
    BrowserWindow *top = cover();
    lookAfter(120);
    QTRY_VERIFY(window->isAsleep());
    top->showNormal();
    top->setGeometry(0, 0, 60, 60);
    QTRY_VERIFY(window->isSeen());
    QTRY_VERIFY(!window->isAsleep() && isShown(window));
    QVERIFY(m_session->active() == top);
}

void tst_Sleep::settingSaysWhen_data()
{
    QTest::addColumn<int>("setting");
    QTest::addColumn<int>("unseenFor");
    QTest::addColumn<bool>("sleeps");
    QTest::newRow("not yet two hours") << -1 << 119 << false;
    QTest::newRow("two hours") << -1 << 120 << true;
    QTest::newRow("not yet five minutes") << 5 << 4 << false;
    QTest::newRow("five minutes") << 5 << 5 << true;
    QTest::newRow("never") << 0 << 100'000 << false;
}

void tst_Sleep::settingSaysWhen()
{
    QFETCH(const int, setting);
    QFETCH(const int, unseenFor);
    QFETCH(const bool, sleeps);
    if (setting >= 0)
        QVERIFY(Settings::sleepAfter.write(setting));
    const BrowserWindow *window = openTall();
    cover();
    lookAfter(unseenFor);
    settle();
    if (sleeps)
        QTRY_VERIFY(window->isAsleep());
    else
        QVERIFY(!window->isAsleep());
}

void tst_Sleep::staysAwake_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::addColumn<QString>("act");
    QTest::newRow("answer to a form")
        << QByteArray("<form id=f method=post action=/order></form>") << u"f.submit(); 1"_s;
    QTest::newRow("opened a window")
        << QByteArray() << u"window.w = open('/one', '', 'width=100,height=100'); 1"_s;
    QTest::newRow("still sending")
        << QByteArray() << u"fetch('/slow', {method: 'POST', body: 'x'}); 1"_s;
    QTest::newRow("still loading") << QByteArray() << u"location.href = '/slow'; 1"_s;
}

/// What would not be as it was when it comes back.
void tst_Sleep::staysAwake()
{
    QFETCH(const QByteArray, html);
    QFETCH(const QString, act);
    TestServer::Reply slow;
    slow.silent = true;
    m_session->server.reply("/slow", slow);
    m_session->server.page("/order", "<title>ordered</title>");
    m_session->server.page("/page", "<title>page</title>" + html);
    BrowserWindow *window = m_session->active();
    go(url(u"/page"_s));
    run(window, act);
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Much);
    cover();
    lookAfter(100'000);
    watch().setFreeMemory(gigabyte);
    lookAfter(100'000, 2 * gigabyte);
    settle();
    QVERIFY(!window->isAsleep());
    QVERIFY(window->browser()->maySleep() == SleepLimit::Much);
}

void tst_Sleep::seenWindowStaysAwake()
{
    m_session->active()->showNormal();
    BrowserWindow *window = openTall();
    BrowserWindow *beside = openTall("beside");
    window->setGeometry(0, 0, 300, 200);
    beside->setGeometry(310, 0, 300, 200);
    QTRY_VERIFY(window->isSeen() && beside->isSeen());
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep() && !beside->isAsleep());
}

void tst_Sleep::typedTextKeepsAwake()
{
    BrowserWindow *window = openTall();
    run(window, u"t.focus(); 1"_s);
    window->browser()->setFocus();
    QWidget *view = window->findChild<WebView *>()->focusProxy();
    QTRY_VERIFY((QTest::keyClick(view, Qt::Key_X), run(window, u"t.value"_s).contains(u'x')));
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Much);
    cover();
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep());
}

void tst_Sleep::type(BrowserWindow *window, const QString &text)
{
    run(window, u"t.focus(); 1"_s);
    window->browser()->setFocus();
    QWidget *view = window->findChild<WebView *>()->focusProxy();
    // A key that comes before the page has the keyboard is lost.
    [&] {
        QTRY_VERIFY((QTest::keyClick(view, Qt::Key_X), run(window, u"t.value"_s).contains(u'x')));
        run(window, u"t.value = ''; 1"_s);
        for (const QChar letter : text)
            QTest::keyClick(view, letter.toLatin1());
        QTRY_COMPARE(run(window, u"t.value.replace(/^x+/, '')"_s), text);
    }();
}

void tst_Sleep::soundKeepsAwake()
{
    BrowserWindow *window = openTall();
    window->browser()->setFocus();
    QWidget *view = window->findChild<WebView *>()->focusProxy();
    // Only a page that the user did something with may be heard.
    QTRY_VERIFY((QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(300, 120)),
                 run(window, u"String(navigator.userActivation.hasBeenActive)"_s) == "true"_L1));
    run(window,
        u"window.a = new AudioContext(); window.o = a.createOscillator(); "
        "o.connect(a.destination); o.start(); 1"_s);
    QTRY_VERIFY(pageOf(window)->recentlyAudible());
    QVERIFY(window->browser()->maySleep() == SleepLimit::Much);
    cover();
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep());
    run(window, u"o.stop(); a.close(); 1"_s);
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Nothing);
    lookAfter(100'000);
    QTRY_VERIFY(window->isAsleep());
}

void tst_Sleep::cameraKeepsAwake()
{
    BrowserWindow *window = openTall();
    run(window, u"navigator.mediaDevices.getUserMedia({video: true}).then(s => window.s = s); 1"_s);
    QTRY_VERIFY(PageAsks::shownIn(window));
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(window)));
    QTRY_COMPARE(run(window, u"String(!!window.s)"_s), u"true"_s);
    QVERIFY(window->browser()->maySleep() == SleepLimit::Much);
    cover();
    lookAfter(100'000);
    watch().setFreeMemory(gigabyte);
    lookAfter(100'000, 2 * gigabyte);
    settle();
    QVERIFY(!window->isAsleep());
}

void tst_Sleep::typedTextSurvivesSleepByHand()
{
    BrowserWindow *window = openTall();
    type(window, u"half a letter"_s);
    const QString typed = run(window, u"t.value"_s);
    QTRY_VERIFY_WITH_TIMEOUT(qUncompress(window->browser()->pageState().history)
                                 .contains(QByteArray("l\0e\0t\0t\0e\0r\0", 12)),
                             15'000);
    sleepByHand();
    QTest::mouseClick(pictureOf(window), Qt::LeftButton);
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
    QCOMPARE(run(window, u"t.value"_s), typed);
    // It is still its user's.
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Much);
}

/// Put to sleep by hand it comes back without a word to the server that was not said before.
void tst_Sleep::answerToAFormIsNotSentAgain()
{
    m_session->server.page("/order", "<title>ordered</title>");
    m_session->server.page("/page", "<form id=f method=post action=/order></form>");
    BrowserWindow *window = m_session->active();
    go(url(u"/page"_s));
    run(window, u"f.submit(); 1"_s);
    QTRY_VERIFY(m_session->shows(url(u"/order"_s)));
    sleepByHand();
    QTest::mouseClick(pictureOf(window), Qt::LeftButton);
    QTRY_VERIFY(!window->isAsleep() && !window->browser()->isBusy());
    int sent = 0;
    for (const TestServer::Request &request : m_session->server.requests("/order"))
        sent += request.method == "POST" ? 1 : 0;
    QCOMPARE(sent, 1);
}

void tst_Sleep::closedWhileItIsAsked_data()
{
    QTest::addColumn<bool>("isFrame");
    QTest::newRow("the window") << false;
    QTest::newRow("the frame") << true;
}

void tst_Sleep::closedWhileItIsAsked()
{
    QFETCH(const bool, isFrame);
    QPointer<BrowserWindow> window = openTall();
    cover();
    lookAfter(100'000);
    QVERIFY2(!window->isAsleep(), "it has been asked and has not answered yet");
    if (isFrame)
        m_session->frame->close();
    else
        window->unload();
    QTRY_VERIFY(!window);
    if (isFrame) {
        QCOMPARE(m_session->windows(), 0);
        return;
    }
    // One that closes as it wakes.
    window = openTall("again");
    sleepByHand();
    window->wake();
    window->close();
    QTRY_VERIFY(!window);
    settle();
    QCOMPARE(m_session->windows(), 2);
}

void tst_Sleep::goneToWhileItIsAsked_data()
{
    QTest::addColumn<QByteArray>("event");
    QTest::newRow("pagehide") << QByteArray("pagehide");
    QTest::newRow("unload") << QByteArray("unload");
}

/// A page takes the question for its end: it must not live on behind that.
void tst_Sleep::goneToWhileItIsAsked()
{
    QFETCH(const QByteArray, event);
    m_session->server.page("/ends",
                           "<title>ends</title><script>addEventListener('" + event
                               + "', () => { window.isOver = true; })</script>");
    m_session->frame->openBrowserWindow(url(u"/ends"_s), WindowState::AsOthers);
    BrowserWindow *window = m_session->active();
    QTRY_VERIFY(isShown(window));
    cover();
    lookAfter(100'000);
    goTo(window);
    settle();
    QTRY_VERIFY(isShown(window) && !window->isAsleep());
    QCOMPARE(m_session->active(), window);
    QCOMPARE(run(window, u"String(window.isOver)"_s), u"undefined"_s);
}

void tst_Sleep::askedTwiceAtOnce()
{
    const BrowserWindow *window = openTall();
    int told = 0;
    window->browser()->askToSleep([] { return true; }, [&](bool may) { told += may ? 1 : 0; });
    window->browser()->askToSleep([] { return true; }, [&](bool may) { told += may ? 1 : 0; });
    QTRY_COMPARE(told, 2);
    // Of its own is what it asks for from now on.
    run(window, u"window.close(); 1"_s);
    QTRY_COMPARE(PageAsks::countIn(window), 1);
}

/// The engine would say yes in its name.
void tst_Sleep::busyPageStays()
{
    m_session->server.page("/busy",
                           "<title>busy</title><script>onpagehide = onbeforeunload = "
                           "() => { window.isOver = true; }</script>");
    m_session->frame->openBrowserWindow(url(u"/busy"_s), WindowState::AsOthers);
    const BrowserWindow *window = m_session->active();
    QTRY_VERIFY(isShown(window));
    pageOf(window)->runJavaScript(u"for (const end = Date.now() + 8000; Date.now() < end;); 1"_s);
    std::optional<bool> answer;
    window->browser()->askToSleep([] { return true; }, [&](bool may) { answer = may; });
    QTRY_VERIFY_WITH_TIMEOUT(answer, 15'000);
    QCOMPARE(*answer, false);
    QCOMPARE(run(window, u"String(window.isOver)"_s), u"undefined"_s);
}

/// 60 of 100 parts of what was free, measured of the real pages.
void tst_Sleep::realMemoryIsLookedAt()
{
    const BrowserWindow *one = openTall("w1");
    const BrowserWindow *two = openTall("w2");
    cover();
    const qint64 used = ProcessMemory::used();
    QVERIFY(used > 0);
    // What takes no more than that need not be found out exactly.
    QVERIFY(ProcessMemory::used(used * 10) >= used / 10 * 9);
    QVERIFY(ProcessMemory::used(used * 10) <= used * 10);
    watch().look(0, 0);
    // Twice what there is, and a little: it is below the limit.
    watch().setFreeMemory(used * 2);
    QCOMPARE(watch().memoryLimit(), used * 2 / 100 * 60);
    watch().measure();
    settle();
    QVERIFY(!one->isAsleep() && !two->isAsleep());
    watch().setFreeMemory(used / 2);
    QTRY_VERIFY((watch().measure(), one->isAsleep() && two->isAsleep()));
    QTRY_VERIFY(ProcessMemory::used() < used);
}

void tst_Sleep::titleStandsForAPageNobodySaw()
{
    m_session->active()->showNormal();
    BrowserWindow *window =
        openBrowserWindow(*m_session->frame, url(u"/one"_s), WindowState::AsOthers, Loading::Later);
    window->setTitle(u"kept title"_s);
    window->setGeometry(0, 0, 300, 200);
    QVERIFY(pictureOf(window));
    const auto inkOf = [](const SleepPicture *picture) {
        const QImage image = const_cast<SleepPicture *>(picture)->grab().toImage();
        int ink = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                ink += image.pixel(x, y) != image.pixel(0, 0) ? 1 : 0;
        }
        return ink;
    };
    QVERIFY(inkOf(pictureOf(window)) > 50);
    window->browser()->navigateNow();
    QTRY_VERIFY(isShown(window));
    QTRY_VERIFY(!pictureOf(window));
}

void tst_Sleep::openQuestionKeepsAwake()
{
    BrowserWindow *window = openTall();
    cover();
    PageQuestion question;
    question.kind = u"x"_s;
    question.text = u"?"_s;
    QVERIFY(window->questions()->ask(question));
    QVERIFY(window->browser()->maySleep() == SleepLimit::Much);
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep());
    window->questions()->endAll();
    lookAfter(100'000);
    QTRY_VERIFY(window->isAsleep());
}

void tst_Sleep::runningDownloadKeepsAwake()
{
    BrowserWindow *window = openTall();
    DripServer server(QByteArray(400'000, 'x'));
    run(window, u"location.href = '%1'; 1"_s.arg(server.url(u"file.bin"_s)));
    QTRY_COMPARE(server.waiting(), 1);
    QTRY_VERIFY(!window->browser()->isBusy());
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Much);
    cover();
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep());
    server.finish();
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Nothing);
    lookAfter(100'000);
    QTRY_VERIFY(window->isAsleep());
}

void tst_Sleep::connectionKeepsAwakeUntilMemoryIsShort()
{
    BrowserWindow *window = openTall();
    run(window, u"window.s = new WebSocket('ws://' + location.host + '/live'); 1"_s);
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Connection);
    cover();
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep());
    watch().setFreeMemory(gigabyte);
    lookAfter(1, gigabyte);
    QTRY_VERIFY(window->isAsleep());
}

void tst_Sleep::streamOfEventsKeepsAwake_data()
{
    const auto script = [](const QByteArray &code) { return "<script>" + code + "</script>"; };
    const QByteArray open = "window.s = new EventSource('/events');"
                            "s.onmessage = e => document.title = e.data;";
    const QByteArray own = "class Own extends EventSource {};"
                           "document.documentElement.dataset.same = EventSource.prototype."
                           "constructor === EventSource && new Own('/events') instanceof Own;";
    QTest::addColumn<QByteArray>("html");
    QTest::newRow("as the page comes") << script(open);
    QTest::newRow("later") << script("addEventListener('load', () => {" + open + "})");
    QTest::newRow("in a frame") << QByteArray(
        "<iframe srcdoc=\"<script>new EventSource('/events')</script>\"></iframe>");
    QTest::newRow("of a class of its own") << script(own);
}

void tst_Sleep::streamOfEventsKeepsAwake()
{
    QFETCH(const QByteArray, html);
    TestServer::Reply events;
    events.type = "text/event-stream";
    events.stallAfterHeaders = true;
    m_session->server.reply("/events", events);
    m_session->server.page("/live", "<title>live</title>" + html);
    BrowserWindow *window = m_session->active();
    go(url(u"/live"_s));
    QTRY_COMPARE(m_session->server.count("/events"), 1);
    // The page finds its class as it knows it.
    QCOMPARE(run(window, u"document.documentElement.dataset.same ?? 'true'"_s), u"true"_s);
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Connection);
    cover();
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep());
    // Until memory is short, or its page has gone.
    watch().setFreeMemory(gigabyte);
    lookAfter(1, gigabyte);
    QTRY_VERIFY(window->isAsleep());
    goTo(window);
    QTRY_VERIFY(m_session->shows(url(u"/live"_s)));
    go(url(u"/one"_s));
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Nothing);
}

void tst_Sleep::connectionBetweenPagesKeepsAwake_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("by its name") << u"RTCPeerConnection"_s;
    QTest::newRow("by its older name") << u"webkitRTCPeerConnection"_s;
}

/// What is sent from page to page, as a file, ends with either of them.
void tst_Sleep::connectionBetweenPagesKeepsAwake()
{
    QFETCH(const QString, name);
    const BrowserWindow *window = openTall();
    QVERIFY(window->browser()->maySleep() == SleepLimit::Nothing);
    run(window, u"window.c = new %1; c.createDataChannel('x'); 1"_s.arg(name));
    QTRY_VERIFY(window->browser()->maySleep() == SleepLimit::Connection);
    // The page finds its class as it knows it.
    QCOMPARE(run(window,
                 u"String(c instanceof RTCPeerConnection && webkitRTCPeerConnection"
                 " === RTCPeerConnection && c.constructor === RTCPeerConnection)"_s),
             u"true"_s);
    cover();
    lookAfter(100'000);
    settle();
    QVERIFY(!window->isAsleep());
}

void tst_Sleep::longestUnseenGoFirst()
{
    QList<BrowserWindow *> windows;
    for (int i = 0; i < 8; ++i)
        windows.append(openTall("w" + QByteArray::number(i)));
    for (int i = 0; i < 7; ++i)
        QTRY_VERIFY(!windows.at(i)->isSeen());
    watch().setFreeMemory(gigabyte);
    QCOMPARE(watch().memoryLimit(), gigabyte / 100 * 60);
    // The first of all is the home page's window.
    watch().look(0, 0);
    cover();
    watch().look(minuteMs, gigabyte / 2);
    settle();
    for (const BrowserWindow *window : std::as_const(windows))
        QVERIFY(!window->isAsleep());
    watch().look(2 * minuteMs, gigabyte);
    // Each page is asked, and answers when it comes to that.
    for (int i = 0; i < 4; ++i)
        QTRY_VERIFY(windows.at(i)->isAsleep());
    for (int i = 4; i < 8; ++i)
        QVERIFY(!windows.at(i)->isAsleep());
    QVERIFY(Settings::sleepMemory.write(0));
    watch().look(3 * minuteMs, gigabyte);
    settle();
    QVERIFY(!windows.at(4)->isAsleep());
}

void tst_Sleep::sleepByHandKeepsTheText()
{
    BrowserWindow *window = openTall();
    run(window, u"t.value = 'half a letter'; 1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(qUncompress(window->browser()->pageState().history)
                                 .contains(QByteArray("h\0a\0l\0f\0 \0a\0", 12)),
                             15'000);
    sleepByHand();
    QVERIFY(m_session->active() == window);
    QTest::mouseClick(pictureOf(window), Qt::LeftButton);
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
    QCOMPARE(run(window, u"t.value"_s), u"half a letter"_s);
}

void tst_Sleep::keyWakesTheActiveWindow()
{
    BrowserWindow *window = openTall();
    sleepByHand();
    window->focusContents();
    QTest::keyClick(window->browser()->widget(), Qt::Key_Space);
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
}

void tst_Sleep::sleepAllOthers()
{
    m_session->active()->showNormal();
    BrowserWindow *seen = openTall("seen");
    BrowserWindow *asking = openTall("asking");
    run(asking,
        u"addEventListener('beforeunload', e => { e.preventDefault(); e.returnValue = 'x'; "
        u"}); 1"_s);
    // Only a page that the user did something with may ask.
    QTRY_VERIFY((QTest::mouseClick(asking->findChild<WebView *>()->focusProxy(), Qt::LeftButton, {},
                                   QPoint(300, 120)),
                 run(asking, u"String(navigator.userActivation.hasBeenActive)"_s) == "true"_L1));
    BrowserWindow *active = openTall("active");
    active->setGeometry(0, 0, 100, 100);
    choose("mnuWindowSleepOthers");
    QTRY_VERIFY(seen->isAsleep());
    settle();
    QVERIFY(!asking->isAsleep());
    QVERIFY(!active->isAsleep());
    QVERIFY(!asking->questions()->shownQuestion());
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(isShown(asking));
}

void tst_Sleep::itemsFollowTheWindows()
{
    const auto enabled = [this](const char *name) { return m_session->item(name)->isEnabled(); };
    openMenu();
    QVERIFY(enabled("mnuWindowSleep"));
    QVERIFY(!enabled("mnuWindowSleepOthers"));
    QVERIFY(!enabled("mnuWindowReopen"));
    openTall();
    openMenu();
    QVERIFY(enabled("mnuWindowSleepOthers"));
    sleepByHand();
    choose("mnuWindowSleepOthers");
    QTRY_VERIFY(browserForms().first()->isAsleep());
    openMenu();
    QVERIFY(!enabled("mnuWindowSleep"));
    QVERIFY(!enabled("mnuWindowSleepOthers"));
    m_session->active()->close();
    openMenu();
    QVERIFY(enabled("mnuWindowReopen"));
    QCOMPARE(m_session->item("mnuWindowReopen")->shortcut(), QKeySequence(u"Ctrl+Shift+T"_s));
}

void tst_Sleep::picturesStaySmall()
{
    m_session->frame->resize(1200, 900);
    BrowserWindow *window = openTall();
    run(window, u"document.body.innerHTML = '<p>' + 'many words of text '.repeat(3000); 1"_s);
    sleepByHand();
    qInfo() << "picture" << pictureOf(window)->size() << "bytes of"
            << window->browser()->widget()->size() << "history"
            << window->browser()->pageState().history.size();
    QVERIFY(pictureOf(window)->size() > 0);
    QVERIFY(pictureOf(window)->size() < 150'000);
}

/// Pages that went to sleep leave neither views nor pages behind.
void tst_Sleep::againAndAgain()
{
    constexpr int rounds = 20;
    BrowserWindow *window = openTall();
    for (int i = 0; i < rounds; ++i) {
        window->fallAsleep();
        QVERIFY(window->isAsleep());
        window->wake();
        QTRY_VERIFY(isShown(window));
    }
    QTRY_COMPARE(window->findChildren<QWebEngineView *>().size(), 1);
    QTRY_VERIFY(window->findChildren<SleepPicture *>().size() <= 1);
    QCOMPARE(window->browser()->historySteps().size(), 0);
}

/// All but the one that is the active one in the end.
void tst_Sleep::windowsThatBeginAsleepStaySo()
{
    constexpr int count = 20;
    QList<BrowserWindow *> windows;
    for (int i = 0; i < count; ++i) {
        windows.append(openBrowserWindow(*m_session->frame, url(u"/one"_s), WindowState::AsOthers,
                                         Loading::Asleep));
        windows.last()->setTitle(u"kept"_s);
    }
    QTRY_VERIFY(isShown(windows.last()));
    for (int i = 0; i + 1 < count; ++i) {
        QVERIFY(windows.at(i)->isAsleep());
        QCOMPARE(windows.at(i)->windowTitle(), u"kept"_s);
        QVERIFY(tabOf(windows.at(i))->isAsleep());
    }
    QCOMPARE(m_session->server.count("/one"), 1);
    goTo(windows.first());
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_Sleep::reopenedAsItWas()
{
    m_session->active()->showNormal();
    BrowserWindow *window = openTall();
    window->browser()->navigate(url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    window->browser()->navigate(url(u"/tall"_s));
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
    window->setGeometry(40, 30, 420, 310);
    run(window, u"t.value = 'half a letter'; scrollTo(0, 2000); 1"_s);
    QTRY_COMPARE(window->browser()->pageState(StateDepth::View).scroll, QPoint(0, 2000));
    QTRY_VERIFY_WITH_TIMEOUT(qUncompress(window->browser()->pageState().history)
                                 .contains(QByteArray("h\0a\0l\0f\0 \0a\0", 12)),
                             15'000);
    window->close();
    QTRY_COMPARE(m_session->windows(), 1);
    m_session->choose("mnuWindowReopen");
    QCOMPARE(m_session->windows(), 2);
    window = m_session->active();
    QCOMPARE(window->windowTitle(), u"tall"_s);
    QCOMPARE(window->geometry(), QRect(40, 30, 420, 310));
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
    QCOMPARE(run(window, u"t.value"_s), u"half a letter"_s);
    QTRY_VERIFY(qAbs(run(window, u"String(scrollY)"_s).toDouble() - 2000) <= 2);
    QCOMPARE(window->browser()->historySteps().size(), 2);
    QVERIFY(ClosedWindows::isEmpty());
    m_session->choose("mnuWindowReopen");
    QCOMPARE(m_session->windows(), 2);
}

void tst_Sleep::reopenedSleeping()
{
    BrowserWindow *window = openTall();
    QVERIFY(window->isMaximized());
    sleepByHand();
    window->close();
    QTRY_COMPARE(m_session->windows(), 1);
    m_session->choose("mnuWindowReopen");
    QTRY_VERIFY(m_session->shows(url(u"/tall"_s)));
    QVERIFY(m_session->active()->isMaximized());
}

void tst_Sleep::lastTwentyFive()
{
    for (int i = 0; i < 30; ++i) {
        m_session->frame->openBrowserWindow(url(u"/w%1"_s.arg(i)), WindowState::AsOthers);
        m_session->active()->close();
    }
    QTRY_COMPARE(m_session->windows(), 1);
    for (int i = 29; i >= 5; --i)
        QCOMPARE(ClosedWindows::take()->address, url(u"/w%1"_s.arg(i)));
    QVERIFY(ClosedWindows::isEmpty());
}

void tst_Sleep::notReopened_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("leavesTrace");
    QTest::newRow("kept out of the history") << u"/tall"_s << false;
    QTest::newRow("blank") << u"about:blank"_s << true;
}

void tst_Sleep::notReopened()
{
    QFETCH(const QString, address);
    QFETCH(const bool, leavesTrace);
    if (!leavesTrace)
        m_session->frame->setNavigationFlags(NavFlags::NoHistory);
    const QString whole = address.startsWith(u'/') ? url(address) : address;
    m_session->frame->openBrowserWindow(whole, WindowState::AsOthers);
    QTRY_VERIFY(m_session->shows(whole));
    m_session->active()->close();
    QTRY_COMPARE(m_session->windows(), 1);
    QVERIFY(ClosedWindows::isEmpty());
}

void tst_Sleep::closedWhileItsFirstPageLoads()
{
    TestServer::Reply slow;
    slow.silent = true;
    m_session->server.reply("/slow", slow);
    m_session->frame->openBrowserWindow(url(u"/slow"_s), WindowState::AsOthers);
    QTRY_COMPARE(m_session->server.count("/slow"), 1);
    m_session->active()->close();
    QTRY_COMPARE(m_session->windows(), 1);
    m_session->server.page("/slow", "<title>there now</title>");
    m_session->choose("mnuWindowReopen");
    QTRY_VERIFY(m_session->shows(url(u"/slow"_s)));
}

void tst_Sleep::windowClosedByItsPageIsReopened()
{
    openTall();
    run(m_session->active(), u"window.close(); 1"_s);
    QTRY_COMPARE(PageAsks::countIn(m_session->active()), 1);
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(m_session->active())));
    QTRY_COMPARE(m_session->windows(), 1);
    QCOMPARE(ClosedWindows::take()->address, url(u"/tall"_s));
}

void tst_Sleep::emptiedFrameIsFilledAgain()
{
    openTall();
    m_session->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_session->windows(), 0);
    m_session->choose("mnuWindowReopen");
    m_session->choose("mnuWindowReopen");
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(isShown(browserForms().first()) && isShown(browserForms().last()));
}

void tst_Sleep::optionsAreKept()
{
    openAdvanced();
    QTRY_VERIFY(form());
    QCOMPARE(find<QSpinBox>("txtSleepAfter")->value(), 120);
    QCOMPARE(find<QSpinBox>("txtSleepMemory")->value(), 60);
    find<QSpinBox>("txtSleepAfter")->setValue(0);
    find<QSpinBox>("txtSleepMemory")->setValue(35);
    save();
    QCOMPARE(Settings::sleepAfter.read(), 0.0);
    QCOMPARE(Settings::sleepMemory.read(), 35.0);
    openAdvanced();
    QTRY_VERIFY(form());
    QCOMPARE(find<QSpinBox>("txtSleepAfter")->value(), 0);
}

int main(int argc, char **argv)
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") + " --use-fake-device-for-media-stream");
    return runEngineTest<tst_Sleep>(argc, argv);
}
#include "tst_sleep.moc"
