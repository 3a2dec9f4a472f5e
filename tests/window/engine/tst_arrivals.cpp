// Who brought a page into its window: the user, or the page before.
#include "EngineTest.h"
#include "PopupScene.h"

using namespace Qt::StringLiterals;

class tst_arrivals : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void pagesOwnDoing_data();
    void pagesOwnDoing();
    void usersSteps_data();
    void usersSteps();
    void keyboardFollowsLinks();
    void oneClickIsOneStep();
    void namedAddresses();
    void stepsThroughTheHistory();
    void addressForAPage();

private:
    static Arrival arrival(const BrowserWindow *form) { return form->browser()->arrivedBy(); }
    /// Waits for the page "/next" on the other host.
    void waitForNext(const BrowserWindow *form);

    std::unique_ptr<PopupScene> m_scene;
};

Q_DECLARE_METATYPE(Arrival)

void tst_arrivals::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/next", "<title>next</title>");
    m_scene->server.redirect("/to", "/next");
}

void tst_arrivals::waitForNext(const BrowserWindow *form)
{
    QTRY_COMPARE(form->windowTitle(), u"next"_s);
}

void tst_arrivals::pagesOwnDoing_data()
{
    QTest::addColumn<QByteArray>("hop");
    QTest::newRow("location") << QByteArray("location=next");
    QTest::newRow("replace") << QByteArray("location.replace(next)");
    QTest::newRow("redirected") << QByteArray("location=next.replace('/next','/to')");
    QTest::newRow("meta refresh") << QByteArray(
        "document.head.insertAdjacentHTML('beforeend',"
        "`<meta http-equiv=refresh content='0;url=${next}'>`)");
    QTest::newRow("form") << QByteArray("f=document.createElement('form');f.action=next;"
                                        "document.body.append(f);f.submit()");
    QTest::newRow("posted form") << QByteArray(
        "f=document.createElement('form');f.action=next;f.method='post';"
        "document.body.append(f);f.submit()");
    QTest::newRow("link clicked by script")
        << QByteArray("a=document.createElement('a');a.href=next;document.body.append(a);"
                      "a.click()");
    QTest::newRow("made up click")
        << QByteArray("a=document.createElement('a');a.href=next;document.body.append(a);"
                      "a.dispatchEvent(new MouseEvent('click',{bubbles:true,cancelable:true}))");
    QTest::newRow("frame") << QByteArray("i=document.createElement('iframe');"
                                         "i.srcdoc=`<script>top.location='${next}'</scr`+`ipt>`;"
                                         "document.body.append(i)");
}

void tst_arrivals::pagesOwnDoing()
{
    QFETCH(const QByteArray, hop);
    BrowserWindow *form = m_scene->openPage(
        "<script>go=()=>setTimeout(()=>{next=`http://other.localhost:${location.port}/next`;" + hop
        + "},1)</script>");
    QCOMPARE(arrival(form), Arrival::ByAddress);
    PopupScene::script(form, u"go()"_s);
    waitForNext(form);
    QCOMPARE(arrival(form), Arrival::ByPage);
}

void tst_arrivals::usersSteps_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::newRow("link") << QByteArray("<a id=b href=/next>link</a>");
    QTest::newRow("redirected") << QByteArray("<a id=b href=/to>link</a>");
    QTest::newRow("form") << QByteArray("<form action=/next><button id=b>send</button></form>");
    QTest::newRow("posted form") << QByteArray(
        "<form action=/next method=post><button id=b>send</button></form>");
}

void tst_arrivals::usersSteps()
{
    QFETCH(const QByteArray, html);
    BrowserWindow *form = m_scene->openPage(html);
    PopupScene::click(form, u"b"_s);
    waitForNext(form);
    QCOMPARE(arrival(form), Arrival::ByStep);
}

void tst_arrivals::keyboardFollowsLinks()
{
    BrowserWindow *form = m_scene->openPage("<a id=b href=/next>link</a>");
    form->browser()->setFocus();
    PopupScene::script(form, u"document.getElementById('b').focus()"_s);
    QWidget *engine = QWebEngineView::forPage(PopupScene::control(form)->page())->focusProxy();
    QTest::keyClick(engine, Qt::Key_Return);
    waitForNext(form);
    QCOMPARE(arrival(form), Arrival::ByStep);
}

/// What the user did stands for the first navigation after it, and typing and moving for none.
void tst_arrivals::oneClickIsOneStep()
{
    m_scene->server.page("/hop",
                         "<title>hop</title><script>onload=()=>setTimeout(()=>{"
                         "location='/next'},1)</script>");
    BrowserWindow *form = m_scene->openPage("<a id=b href=/hop>link</a>");
    PopupScene::click(form, u"b"_s);
    waitForNext(form);
    QCOMPARE(arrival(form), Arrival::ByPage);

    BrowserWindow *other = m_scene->openPage("<input id=b>");
    QWidget *engine = QWebEngineView::forPage(PopupScene::control(other)->page())->focusProxy();
    QTest::keyClicks(engine, u"text"_s);
    QTest::mouseMove(engine, QPoint(5, 5));
    PopupScene::script(other, u"location='/next'; 1"_s);
    waitForNext(other);
    QCOMPARE(arrival(other), Arrival::ByPage);
}

void tst_arrivals::namedAddresses()
{
    BrowserWindow *form = m_scene->openPage("page");
    form->browser()->navigate(m_scene->server.url(u"/to"_s));
    waitForNext(form);
    QCOMPARE(arrival(form), Arrival::ByAddress);
    form->browser()->navigate(u"about:blank"_s);
    QTRY_COMPARE(form->browser()->locationUrl(), u"about:blank"_s);
    QCOMPARE(arrival(form), Arrival::ByAddress);
}

void tst_arrivals::stepsThroughTheHistory()
{
    BrowserWindow *form = m_scene->openPage("page");
    form->browser()->navigate(m_scene->server.url(u"/next"_s));
    waitForNext(form);
    QTRY_VERIFY(!form->browser()->isBusy());
    QVERIFY(form->browser()->goBack());
    QTRY_COMPARE(form->windowTitle(), u"opener"_s);
    QCOMPARE(arrival(form), Arrival::ByStep);
    QTRY_VERIFY(!form->browser()->isBusy());
    PopupScene::script(form, u"history.forward(); 1"_s);
    waitForNext(form);
    QCOMPARE(arrival(form), Arrival::ByPage);
}

void tst_arrivals::addressForAPage()
{
    BrowserWindow *form = m_scene->openPage("page");
    form->browser()->navigateForPage(m_scene->server.url(u"/next"_s));
    waitForNext(form);
    QCOMPARE(arrival(form), Arrival::ByPage);
    form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    QTRY_COMPARE(form->windowTitle(), u"opener"_s);
    QCOMPARE(arrival(form), Arrival::ByAddress);
}

ORVANE_ENGINE_TEST_MAIN(tst_arrivals)
#include "tst_arrivals.moc"
