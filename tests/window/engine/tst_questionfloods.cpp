#include <QMdiArea>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QWebEngineView>

#include "EngineTest.h"
#include "PageAsks.h"
#include "PageLife.h"
#include "PageQuestions.h"
#include "PopupScene.h"

using namespace Qt::StringLiterals;

/// Real pages that turn the strip against their user.
class tst_questionfloods : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void pageIsLaidOutBelow();
    void aThousandOfEach_data();
    void aThousandOfEach();
    void pageGoesWhileItAsks();
    void typingGoesOn();
    void questionEndsFullScreen();
    void fullScreenWaitsForTheAnswer();
    void fiftyWindowsAskAtOnce();
    void fiftyWindowsHaveAMessage();
    void askerWithoutANameIsWritten();

private:
    QWebEngineView *view() const
    {
        return QWebEngineView::forPage(PopupScene::control(m_form)->page());
    }
    QList<BrowserWindow *> openFifty(const QByteArray &html);
    /// Its button fills the screen; the title says what came of it.
    void openFiller();
    QString title() const { return m_form->windowTitle(); }
    /// As if an earlier one had been granted unasked.
    void askToPrint();

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

void tst_questionfloods::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_form = m_scene->openPage("<input id=i autofocus><p>text</p>", true);
    QVERIFY(QTest::qWaitForWindowActive(m_scene->frame.window()));
}

void tst_questionfloods::askToPrint()
{
    QVERIFY(m_form->questions()->mayGoAhead());
    PopupScene::script(m_form, u"print(); 1"_s);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
}

void tst_questionfloods::pageIsLaidOutBelow()
{
    const int before = PopupScene::script(m_form, u"innerHeight"_s).toInt();
    askToPrint();
    const int height = PageAsks::shownIn(m_form)->height();
    QCOMPARE(m_form->browser()->widget()->geometry().top(), height);
    QTRY_COMPARE(PopupScene::script(m_form, u"innerHeight"_s).toInt(), before - height);
    PageAsks::press(PageAsks::no(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(PopupScene::script(m_form, u"innerHeight"_s).toInt(), before);
}

void tst_questionfloods::aThousandOfEach_data()
{
    QTest::addColumn<bool>("isBehind");
    QTest::newRow("in front") << false;
    QTest::newRow("behind another window") << true;
}

/// Whatever it asks for, one thing is asked, and the user has his peace after two answers.
void tst_questionfloods::aThousandOfEach()
{
    QFETCH(const bool, isBehind);
    QVERIFY(m_form->questions()->mayGoAhead());
    if (isBehind) {
        m_scene->server.page("/other", "<title>other</title>");
        const BrowserWindow *other = m_scene->frame.open(m_scene->server.url(u"/other"_s));
        QTRY_COMPARE(other->windowTitle(), u"other"_s);
    }
    PopupScene::script(m_form,
                       u"const t = setInterval(() => {"
                       "for (let i = 0; i < 1000; i++) { print(); close() }"
                       "if (window.goesOn) { clearInterval(t); document.title = 'done' } },"
                       "100); 1"_s);
    QTRY_COMPARE(PageAsks::countIn(m_form), 1);
    m_scene->frame.area->setActiveSubWindow(m_form);
    PageQuestionBox *first = PageAsks::shownIn(m_form);
    PageAsks::noMore(first)->click();
    PageAsks::press(PageAsks::no(first));
    QTRY_COMPARE(PageAsks::countIn(m_form), 0);
    QVERIFY(m_form->questions()->isSilenced());
    PopupScene::script(m_form, u"window.goesOn = true; 1"_s);
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"done"_s, 60000);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QVERIFY(m_form);
}

void tst_questionfloods::pageGoesWhileItAsks()
{
    m_scene->server.page("/b", "<title>b</title>");
    askToPrint();
    const QPointer<PageQuestionBox> strip = PageAsks::shownIn(m_form);
    PageAsks::waitUntilAnswerable(strip);
    PopupScene::script(m_form, u"location = '/b'; 1"_s);
    QTRY_COMPARE(title(), u"b"_s);
    QTRY_VERIFY(!strip);
    QCOMPARE(m_form->questions()->stripHeight(), 0);
    QCOMPARE(m_form->browser()->widget()->geometry().top(), 0);
}

/// What is typed as a question comes reaches the page and answers nothing.
void tst_questionfloods::typingGoesOn()
{
    m_form->browser()->setFocus();
    PopupScene::click(m_form, u"i"_s);
    QTRY_COMPARE(PopupScene::script(m_form, u"document.activeElement.id"_s).toString(), u"i"_s);
    askToPrint();
    PageAsks::waitUntilAnswerable(PageAsks::shownIn(m_form));
    QTest::keyClicks(QApplication::focusWidget(), u"a b"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(PopupScene::script(m_form, u"i.value"_s).toString(), u"a b"_s);
    QCOMPARE(PageAsks::countIn(m_form), 1);
}

void tst_questionfloods::openFiller()
{
    m_form = m_scene->openPage(
        "<button id=b>fill</button><script>document.onfullscreenchange = () => document.title = "
        "document.fullscreenElement ? 'full' : 'back';"
        "b.onclick = () => document.body.requestFullscreen()</script>",
        true);
    QVERIFY(QTest::qWaitForWindowActive(m_scene->frame.window()));
}

/// What is asked must be seen.
void tst_questionfloods::questionEndsFullScreen()
{
    openFiller();
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(title(), u"full"_s);
    QVERIFY(view()->isWindow());
    askToPrint();
    QTRY_COMPARE(title(), u"back"_s);
    QVERIFY(m_form->isAncestorOf(view()));
    QTRY_VERIFY(PageAsks::shownIn(m_form)->isAnswerable());
}

void tst_questionfloods::fullScreenWaitsForTheAnswer()
{
    openFiller();
    askToPrint();
    QPointer<PageQuestionBox> box = PageAsks::shownIn(m_form);
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(title(), u"back"_s);
    QVERIFY(m_form->isAncestorOf(view()));
    QVERIFY(box && box->isVisible());
    PageAsks::press(PageAsks::no(box));
    QTRY_VERIFY(!PageAsks::shownIn(m_form));
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(title(), u"full"_s);
}

/// One of a site each, and scattered, as what is covered does not ask for the place.
QList<BrowserWindow *> tst_questionfloods::openFifty(const QByteArray &html)
{
    constexpr int many = 50;
    m_scene->server.page("/many", html);
    m_form->showNormal();
    QList<BrowserWindow *> windows;
    for (int i = 0; i < many; ++i) {
        const QString host = u"site%1.localhost"_s.arg(i);
        BrowserWindow *window = m_scene->frame.open(m_scene->server.url(u"/many"_s, host));
        window->resize(400, 300);
        window->move(i * 12, i * 8);
        windows.append(window);
    }
    return windows;
}

/// None holds the others, and all end with the program.
void tst_questionfloods::fiftyWindowsAskAtOnce()
{
    const QList<BrowserWindow *> windows =
        openFifty("<title>asks</title><script>navigator.geolocation.getCurrentPosition("
                  "() => {}, e => document.title = 'told ' + e.code)</script>");
    for (const BrowserWindow *each : windows)
        QTRY_COMPARE_WITH_TIMEOUT(PageAsks::countIn(each), 1, PopupScene::patience);
    QVERIFY(!QApplication::activeModalWidget());
    for (const int at : {20, 10}) {
        BrowserWindow *front = windows.at(at);
        m_scene->frame.area->setActiveSubWindow(front);
        PageAsks::press(PageAsks::no(PageAsks::shownIn(front)));
        QTRY_COMPARE(front->windowTitle(), u"told 1"_s);
        QCOMPARE(PageAsks::countIn(front), 0);
    }
    PageLife::dropAll();
    for (const BrowserWindow *each : windows)
        QCOMPARE(PageAsks::countIn(each), 0);
}

/// Only that in front waits for an answer, and the others go on.
void tst_questionfloods::fiftyWindowsHaveAMessage()
{
    const QList<BrowserWindow *> windows =
        openFifty("<title>says</title><script>setTimeout(() => { alert('hello'); "
                  "document.title = 'said' }, 500)</script>");
    std::vector<std::unique_ptr<WhenAsked>> answers;
    for (BrowserWindow *each : windows)
        answers.push_back(std::make_unique<WhenAsked>(
            each, [](PageQuestionBox *box) { PageAsks::yes(box)->click(); }));
    for (const BrowserWindow *each : windows)
        QTRY_COMPARE_WITH_TIMEOUT(each->windowTitle(), u"said"_s, PopupScene::patience);
    QTRY_COMPARE(PageAsks::countIn(windows.last()), 0);
    QVERIFY(answers.back()->count() > 0);
    QVERIFY(!QApplication::activeModalWidget());
    PageLife::dropAll();
    for (const BrowserWindow *each : windows)
        QCOMPARE(PageAsks::countIn(each), 0);
}

/// As the address bar writes it, port included.
void tst_questionfloods::askerWithoutANameIsWritten()
{
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHostIPv6))
        QSKIP("this machine has no IPv6");
    connect(&server, &QTcpServer::newConnection, this, [&server] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 20\r\n"
                          "Connection: close\r\n\r\n<title>six</title>ok");
            socket->disconnectFromHost();
        });
    });
    const QString site = u"http://[::1]:%1"_s.arg(server.serverPort());
    m_form = m_scene->frame.open(site + u'/', true);
    QTRY_COMPARE(title(), u"six"_s);
    askToPrint();
    QCOMPARE(PageAsks::askerOf(PageAsks::shownIn(m_form)), site);
}

ORVANE_ENGINE_TEST_MAIN(tst_questionfloods)
#include "tst_questionfloods.moc"
