// A page that shows another address in another window is to that window as a new one.
#include "ControlScene.h"
#include "EngineTest.h"

#include <QBuffer>
#include <QIcon>
#include <QPointer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_handedpages : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void processGoesOn();
    void nothingOfThePageIsLeft();
    void iconIsTold();
    void otherOriginsGetAPageOfTheirOwn_data();
    void otherOriginsGetAPageOfTheirOwn();
    void entangledPageEnds_data();
    void entangledPageEnds();
    void pageOnItsWayEnds();
    void whatIsNoPageLeavesTheWindowEmpty_data();
    void whatIsNoPageLeavesTheWindowEmpty();
    void serverThatIsGoneShowsTheErrorPage();
    void stopLeavesTheWindowEmpty();
    void refusalLeavesTheWindowEmpty();
    void otherAddressTakesOver();
    void bothWindowsGoOn();

private:
    QString url(const QString &path, const QString &host = u"127.0.0.1"_s) const
    {
        return m_idle->server.url(path, host);
    }
    /// The other window waits at `address` and takes the place of the first.
    void handOnTo(const QString &address) const;
    void arriveAt(const QString &address) const
    {
        handOnTo(address);
        waitForNext(address);
    }
    /// A control that waited is at its address before the page is.
    void waitForNext(const QString &address) const
    {
        QTRY_VERIFY(m_next->events.count("complete "_L1 + address) > 0);
        QTRY_VERIFY(!m_next->browser->Busy());
    }

    /// The server is that of the first.
    std::unique_ptr<ControlScene> m_idle;
    std::unique_ptr<ControlScene> m_next;
};

void tst_handedpages::init()
{
    m_idle = std::make_unique<ControlScene>();
    m_next = std::make_unique<ControlScene>();
    m_idle->server.page("/first",
                        "<title>First</title><link rel=icon href=/icon.png>"
                        "<script>name = 'first'; sessionStorage.mine = 1</script>");
    m_idle->server.page("/next",
                        "<title>Next</title><link rel=icon href=/icon.png><script>"
                        "var found = name + '|' + sessionStorage.length + '|' + document.referrer"
                        "</script>");
    QImage icon(16, 16, QImage::Format_RGB32);
    icon.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    icon.save(&buffer, "PNG");
    m_idle->server.file("/icon.png", png, "image/png");
    m_idle->open(url(u"/first"_s));
}

void tst_handedpages::cleanup()
{
    m_next.reset();
    m_idle.reset();
}

void tst_handedpages::handOnTo(const QString &address) const
{
    m_next->browser->NavigateLater(address);
    m_next->browser->NavigateNowInPlaceOf(*m_idle->browser);
    QVERIFY(!m_idle->browser->page());
    QVERIFY(m_idle->browser->Waiting());
    QVERIFY(!m_next->browser->Waiting());
    QCOMPARE(m_idle->browser->LocationURL(), url(u"/first"_s));
}

void tst_handedpages::processGoesOn()
{
    const qint64 process = m_idle->browser->page()->renderProcessPid();
    QVERIFY(process != 0);
    arriveAt(url(u"/next"_s));
    QCOMPARE(m_next->browser->page()->renderProcessPid(), process);
    QCOMPARE(m_next->events.count(u"before "_s + url(u"/next"_s)), 1);
    QCOMPARE(m_next->events.count(u"complete "_s + url(u"/next"_s)), 1);
}

void tst_handedpages::nothingOfThePageIsLeft()
{
    arriveAt(url(u"/next"_s));
    QCOMPARE(m_next->script(u"found"_s), u"|0|"_s);
    QTRY_COMPARE(m_next->events.titles.last(), u"Next"_s);
    QVERIFY(!m_next->events.titles.contains(u"First"_s));
    QCOMPARE(m_next->script(u"getComputedStyle(document.documentElement).display"_s), u"block"_s);
    QVERIFY(m_next->browser->HistorySteps().isEmpty());
    QVERIFY(!m_next->browser->GoBack());
    QTRY_COMPARE(m_next->script(u"String(history.length)"_s), u"1"_s);
}

void tst_handedpages::iconIsTold()
{
    QTRY_VERIFY(!m_idle->events.lastIcon.isNull());
    arriveAt(url(u"/next"_s));
    QTRY_VERIFY(!m_next->events.lastIcon.isNull());
}

void tst_handedpages::otherOriginsGetAPageOfTheirOwn_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("otherPort");
    QTest::newRow("host") << u"localhost"_s << false;
    QTest::newRow("port") << u"127.0.0.1"_s << true;
}

void tst_handedpages::otherOriginsGetAPageOfTheirOwn()
{
    QFETCH(QString, host);
    QFETCH(bool, otherPort);
    m_next->server.page("/next", "<title>Next</title>");
    const qint64 process = m_idle->browser->page()->renderProcessPid();
    arriveAt(otherPort ? m_next->server.url(u"/next"_s) : url(u"/next"_s, host));
    QVERIFY(m_next->browser->page()->renderProcessPid() != process);
}

void tst_handedpages::entangledPageEnds_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("window") << QByteArray("<script>open('/next', 'w')</script>");
    QTest::newRow("frame of another site") << QByteArray("<iframe src='%1'></iframe>");
}

void tst_handedpages::entangledPageEnds()
{
    QFETCH(QByteArray, body);
    ControlScene opened;
    m_idle->events.nextTarget = opened.browser;
    body.replace("%1", url(u"/next"_s, u"localhost"_s).toUtf8());
    m_idle->server.page("/entangled", "<title>Entangled</title>" + body);
    m_idle->open(url(u"/entangled"_s));
    QTRY_VERIFY(m_idle->server.count("/next") > 0);
    const QPointer<WebPage> page = m_idle->browser->page();
    m_next->browser->NavigateLater(url(u"/next"_s));
    m_next->browser->NavigateNowInPlaceOf(*m_idle->browser);
    QVERIFY(!page);
    waitForNext(url(u"/next"_s));
    QCOMPARE(m_next->script(u"found"_s), u"|0|"_s);
}

void tst_handedpages::pageOnItsWayEnds()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_idle->server.reply("/silent", silent);
    m_idle->browser->Navigate(url(u"/silent"_s));
    QTRY_VERIFY(m_idle->browser->Busy());
    const QPointer<WebPage> page = m_idle->browser->page();
    m_next->browser->NavigateLater(url(u"/next"_s));
    m_next->browser->NavigateNowInPlaceOf(*m_idle->browser);
    QVERIFY(!page);
    waitForNext(url(u"/next"_s));
}

void tst_handedpages::whatIsNoPageLeavesTheWindowEmpty_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("nothing") << 204 << QByteArray("text/html");
    QTest::newRow("file") << 200 << QByteArray("application/octet-stream");
}

void tst_handedpages::whatIsNoPageLeavesTheWindowEmpty()
{
    TestServer::Reply reply;
    QFETCH(int, status);
    QFETCH(QByteArray, type);
    reply.status = status;
    reply.type = type;
    m_idle->server.reply("/no-page", reply);
    QSignalSpy ended(m_next->browser, &WebBrowser::loadEnded);
    handOnTo(url(u"/no-page"_s));
    QTRY_VERIFY(!ended.isEmpty());
    QTRY_VERIFY(!m_next->browser->page());
    QVERIFY(!m_next->browser->HasDocument());
    QVERIFY(!m_next->browser->Busy());
    m_next->open(url(u"/next"_s));
    QCOMPARE(m_next->script(u"found"_s), u"|0|"_s);
}

void tst_handedpages::serverThatIsGoneShowsTheErrorPage()
{
    TestServer::Reply gone;
    gone.hangUp = true;
    m_idle->server.reply("/gone", gone);
    handOnTo(url(u"/gone"_s));
    QTRY_VERIFY(m_next->browser->HasDocument());
    QTRY_VERIFY(!m_next->browser->Busy());
    QTRY_VERIFY(m_next->script(u"document.body.innerText"_s).contains(u"127.0.0.1"_s));
    QVERIFY(m_next->browser->HistorySteps().isEmpty());
}

void tst_handedpages::stopLeavesTheWindowEmpty()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_idle->server.reply("/silent", silent);
    handOnTo(url(u"/silent"_s));
    QTRY_COMPARE(m_idle->server.count("/silent"), 1);
    m_next->browser->Stop();
    QTRY_VERIFY(!m_next->browser->page());
    m_next->browser->Refresh();
    m_next->open(url(u"/next"_s));
    QCOMPARE(m_next->script(u"found"_s), u"|0|"_s);
}

void tst_handedpages::refusalLeavesTheWindowEmpty()
{
    m_next->events.refuse = true;
    handOnTo(url(u"/next"_s));
    QTRY_VERIFY(!m_next->browser->page());
    m_next->events.refuse = false;
    m_next->browser->Navigate(url(u"/next"_s));
    waitForNext(url(u"/next"_s));
    QCOMPARE(m_next->script(u"found"_s), u"|0|"_s);
}

void tst_handedpages::otherAddressTakesOver()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_idle->server.reply("/silent", silent);
    handOnTo(url(u"/silent"_s));
    QTRY_COMPARE(m_idle->server.count("/silent"), 1);
    m_next->browser->Navigate(url(u"/next"_s));
    waitForNext(url(u"/next"_s));
    QCOMPARE(m_next->script(u"found"_s), u"|0|"_s);
    QVERIFY(m_next->browser->HistorySteps().isEmpty());
}

void tst_handedpages::bothWindowsGoOn()
{
    arriveAt(url(u"/next"_s));
    m_idle->browser->NavigateNow();
    QTRY_COMPARE(m_idle->events.count("complete "_L1 + url(u"/first"_s)), 2);
    QTRY_VERIFY(!m_idle->browser->Busy());
    QVERIFY(m_idle->browser->page() != m_next->browser->page());
    const QString display = u"getComputedStyle(document.documentElement).display"_s;
    QCOMPARE(m_idle->script(display), u"block"_s);
    m_next->open(url(u"/next?2"_s));
    QCOMPARE(m_next->browser->HistorySteps().size(), 1);
    QVERIFY(m_next->browser->GoBack());
    m_next->waitFor(url(u"/next"_s));
}

ORVANE_ENGINE_TEST_MAIN(tst_handedpages)
#include "tst_handedpages.moc"
