// Navigation of the engine control, against a real server.
#include "ControlScene.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "SparePage.h"

#include <QSignalSpy>
#include <QTemporaryFile>
#include <QWebEngineHistory>

using namespace Qt::StringLiterals;

class tst_navigation_engine : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void sparePageHasNoHistory();
    void eventsComeInOrder();
    void aboutBlankHasItsEvents();
    void aboutBlankOverALoadHasItsEvents();
    void aboutBlankIsRefused();
    void redirectIsOneNavigation();
    void reloadHasItsEvents();
    void framesCompleteBeforeThePage();
    void fragmentChangesTheAddressOnly();
    void historyStateChangesTheAddressOnly();
    void locationIsByteExact();
    void backAndForward();
    void busyUntilLoaded();
    void stopEndsALoad();
    void refusedNavigationLeavesThePage();
    void noContentLeavesThePage();
    void nothingComesWhileThePageLoads_data();
    void nothingComesWhileThePageLoads();
    void notFoundShowsTheServersPage();
    void refreshCompletelyBypassesTheCache();
    void scriptAddressDoesNotRun();
    void emptyAddressesAskAndDoNothing_data();
    void emptyAddressesAskAndDoNothing();
    void textThatIsNoAddressIsTold();
    void addressOfAnotherProgramIsTold_data();
    void addressOfAnotherProgramIsTold();
    void markup();
    void statusTexts();

private:
    QString script(const QString &code) { return m_scene->script(code); }
    bool arrived(const QString &url) { return m_events->count("complete "_L1 + url) > 0; }

    std::unique_ptr<ControlScene> m_scene;
    TestServer *m_server = nullptr;
    RecordedEvents *m_events = nullptr;
    QtWebBrowser *m_browser = nullptr;
};

void tst_navigation_engine::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_server = &m_scene->server;
    m_events = &m_scene->events;
    m_browser = m_scene->browser;
    QVERIFY(m_server->isListening());
    m_server->page("/a", "<title>Page A</title><a id=b href=/b>to b</a>");
    m_server->page("/b", "<title>Page B</title>b");
}

void tst_navigation_engine::cleanup()
{
    m_scene.reset();
}

void tst_navigation_engine::sparePageHasNoHistory()
{
    warmUpEngine();
    std::unique_ptr<WebPage> page(SparePage::take(engineProfile()));
    bool answered = false;
    page->runJavaScript(u"1"_s, [&answered](const QVariant &) { answered = true; });
    QTRY_VERIFY(answered);
    QCOMPARE(page->history()->count(), 0);
    QVERIFY(page->renderProcessPid() > 0);
    QVERIFY(page->url().isEmpty());
}

void tst_navigation_engine::eventsComeInOrder()
{
    warmUpEngine();
    const QString url = m_server->url(u"/a"_s);
    QVERIFY(!m_browser->hasDocument());
    QCOMPARE(m_browser->locationUrl(), QString());
    m_browser->navigate(url);
    QTRY_VERIFY(arrived(url));
    QTRY_VERIFY(!m_browser->isBusy());
    const QStringList expected{"before "_L1 + url, "navigated "_L1 + url, "complete "_L1 + url};
    QCOMPARE(m_events->navigation(), expected);
    QTRY_COMPARE(m_events->titles.last(), u"Page A"_s);
    QVERIFY(m_browser->hasDocument());
    QCOMPARE(m_browser->locationUrl(), url);
    QCOMPARE(m_browser->page()->history()->count(), 1);
}

void tst_navigation_engine::aboutBlankHasItsEvents()
{
    m_browser->navigate(u"About:Blank"_s);
    QTRY_VERIFY2(arrived(u"about:blank"_s), qPrintable(m_events->lines.join(u'|')));
    const QStringList expected{u"before about:blank"_s, u"navigated about:blank"_s,
                               u"complete about:blank"_s};
    QCOMPARE(m_events->navigation(), expected);
    QCOMPARE(m_browser->locationUrl(), u"about:blank"_s);
    QTRY_VERIFY(!m_browser->isBusy());
    m_events->lines.clear();
    m_browser->navigate(m_server->url(u"/a"_s));
    QTRY_VERIFY2(arrived(m_server->url(u"/a"_s)), qPrintable(m_events->lines.join(u"|"_s)));
    m_events->lines.clear();
    m_browser->navigate(u"about:blank"_s);
    QTRY_VERIFY2(arrived(u"about:blank"_s), qPrintable(m_events->lines.join(u'|')));
    QCOMPARE(m_events->navigation(), expected);
}

void tst_navigation_engine::aboutBlankOverALoadHasItsEvents()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_server->reply("/never.png", silent);
    m_server->page("/slow", "<title>Slow</title><img src=/never.png>");
    m_browser->navigate(m_server->url(u"/slow"_s));
    QTRY_COMPARE(m_events->titles.value(m_events->titles.size() - 1), u"Slow"_s);
    m_events->lines.clear();
    m_browser->navigate(u"about:blank"_s);
    QTRY_VERIFY2(arrived(u"about:blank"_s), qPrintable(m_events->lines.join(u'|')));
    QTRY_VERIFY(!m_browser->isBusy());
    const QStringList expected{u"before about:blank"_s, u"navigated about:blank"_s,
                               u"complete about:blank"_s};
    QCOMPARE(m_events->navigation(), expected);
}

void tst_navigation_engine::aboutBlankIsRefused()
{
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    m_events->refuse = true;
    m_browser->navigate(u"about:blank"_s);
    QCOMPARE(m_events->count(u"before about:blank"_s), 1);
    QCOMPARE(script(u"document.title"_s), u"Page A"_s);
    QCOMPARE(m_browser->locationUrl(), a);
}

void tst_navigation_engine::redirectIsOneNavigation()
{
    m_server->redirect("/first", "/second");
    m_server->redirect("/second", "/b");
    m_browser->navigate(m_server->url(u"/first"_s));
    const QString end = m_server->url(u"/b"_s);
    QTRY_VERIFY(arrived(end));
    const QStringList expected{"before "_L1 + m_server->url(u"/first"_s), "navigated "_L1 + end,
                               "complete "_L1 + end};
    QCOMPARE(m_events->navigation(), expected);
}

void tst_navigation_engine::reloadHasItsEvents()
{
    const QString url = m_server->url(u"/a"_s);
    m_browser->navigate(url);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(url));
    m_events->lines.clear();
    m_browser->refresh();
    QTRY_VERIFY(arrived(url));
    const QStringList expected{"before "_L1 + url, "navigated "_L1 + url, "complete "_L1 + url};
    QCOMPARE(m_events->navigation(), expected);
}

void tst_navigation_engine::framesCompleteBeforeThePage()
{
    m_server->page("/framed", "<title>F</title><iframe src=/a></iframe><iframe src=/b></iframe>");
    const QString url = m_server->url(u"/framed"_s);
    m_browser->navigate(url);
    QTRY_VERIFY(arrived(url));
    QCOMPARE(m_events->navigation().last(), "complete "_L1 + url);
    QVERIFY(arrived(m_server->url(u"/a"_s)));
    QVERIFY(arrived(m_server->url(u"/b"_s)));
    QCOMPARE(m_events->count("before "_L1 + m_server->url(u"/a"_s)), 1);
    QCOMPARE(m_events->count("navigated "_L1 + m_server->url(u"/a"_s)), 0);
    QCOMPARE(m_events->count("navigated "_L1 + url), 1);
}

void tst_navigation_engine::fragmentChangesTheAddressOnly()
{
    const QString url = m_server->url(u"/a"_s);
    m_browser->navigate(url);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(url));
    m_events->lines.clear();
    m_browser->navigate(url + "#part"_L1);
    QTRY_COMPARE(m_browser->locationUrl(), url + "#part"_L1);
    QCOMPARE(m_events->count("location "_L1 + url + "#part"_L1), 1);
    QCOMPARE(m_events->count("navigated "_L1 + url + "#part"_L1), 0);
    QVERIFY(!m_browser->isBusy());
}

void tst_navigation_engine::historyStateChangesTheAddressOnly()
{
    const QString url = m_server->url(u"/a"_s);
    m_browser->navigate(url);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(url));
    m_events->lines.clear();
    script(u"history.pushState(null, '', '/pushed')"_s);
    const QString pushed = m_server->url(u"/pushed"_s);
    QTRY_COMPARE(m_browser->locationUrl(), pushed);
    QCOMPARE(m_events->navigation(), QStringList{"location "_L1 + pushed});
}

void tst_navigation_engine::locationIsByteExact()
{
    m_server->page("/x%20y", "<title>E</title>");
    m_server->page("/go", "<title>G</title><script>location='/x%20y?q=%C3%A4+%2b%41%7e'</script>");
    m_browser->navigate(m_server->url(u"/go"_s));
    QTRY_COMPARE(m_browser->locationUrl(), m_server->url(u"/x%20y?q=%C3%A4+%2b%41%7e"_s));
}

void tst_navigation_engine::backAndForward()
{
    QVERIFY(!m_browser->goBack());
    const QString a = m_server->url(u"/a"_s);
    const QString b = m_server->url(u"/b"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(arrived(a));
    QVERIFY(!m_browser->goBack());
    QVERIFY(!m_browser->goForward());
    script(u"document.getElementById('b').click()"_s);
    QTRY_VERIFY(arrived(b));
    m_events->lines.clear();
    QVERIFY(m_browser->goBack());
    QTRY_VERIFY(arrived(a));
    QCOMPARE(m_browser->locationUrl(), a);
    QCOMPARE(m_events->navigation().first(), "before "_L1 + a);
    QVERIFY(m_browser->goForward());
    QTRY_VERIFY(arrived(b));
    QCOMPARE(m_browser->locationUrl(), b);
}

void tst_navigation_engine::busyUntilLoaded()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_server->reply("/never.png", silent);
    m_server->page("/slow", "<title>Slow</title><img src=/never.png>");
    m_browser->navigate(m_server->url(u"/slow"_s));
    QTRY_COMPARE(m_events->titles.value(m_events->titles.size() - 1), u"Slow"_s);
    QVERIFY(m_browser->isBusy());
    QVERIFY(m_browser->hasDocument());
    m_browser->stop();
    QTRY_VERIFY(!m_browser->isBusy());
}

void tst_navigation_engine::stopEndsALoad()
{
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    TestServer::Reply silent;
    silent.silent = true;
    m_server->reply("/never", silent);
    m_browser->navigate(m_server->url(u"/never"_s));
    QTRY_VERIFY(m_browser->isBusy() && m_server->count("/never") == 1);
    m_browser->stop();
    QTRY_VERIFY(!m_browser->isBusy());
    QCOMPARE(m_browser->locationUrl(), a);
    QVERIFY(!arrived(m_server->url(u"/never"_s)));
}

void tst_navigation_engine::refusedNavigationLeavesThePage()
{
    const QString a = m_server->url(u"/a"_s);
    const QString b = m_server->url(u"/b"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    m_events->refuse = true;
    m_browser->navigate(b);
    QTRY_COMPARE(m_events->count("before "_L1 + b), 1);
    m_events->refuse = false;
    m_events->lines.clear();
    m_browser->refresh();
    QTRY_VERIFY(arrived(a));
    QTRY_VERIFY(!m_browser->isBusy());
    QCOMPARE(m_browser->locationUrl(), a);
    QCOMPARE(m_server->count("/b"), 0);
    const QStringList expected{"before "_L1 + a, "navigated "_L1 + a, "complete "_L1 + a};
    QCOMPARE(m_events->navigation(), expected);
}

void tst_navigation_engine::noContentLeavesThePage()
{
    TestServer::Reply nothing;
    nothing.status = 204;
    m_server->reply("/nothing", nothing);
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    m_browser->navigate(m_server->url(u"/nothing"_s));
    QTRY_VERIFY(m_server->count("/nothing") == 1);
    QTRY_VERIFY(!m_browser->isBusy());
    QCOMPARE(m_browser->locationUrl(), a);
}

void tst_navigation_engine::nothingComesWhileThePageLoads_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no content") << u"/nothing"_s;
    QTest::newRow("redirect to no content") << u"/redirect"_s;
    QTest::newRow("redirect to another program") << u"/other"_s;
}

void tst_navigation_engine::nothingComesWhileThePageLoads()
{
    QFETCH(const QString, path);
    TestServer::Reply nothing;
    nothing.status = 204;
    m_server->reply("/nothing", nothing);
    m_server->redirect("/redirect", "/nothing");
    m_server->redirect("/other", "foo:bar");
    m_server->page("/slow", "<title>Slow</title><img src=/late.png>");
    m_server->hold("/late.png");
    const QString slow = m_server->url(u"/slow"_s);
    m_browser->navigate(slow);
    QTRY_COMPARE(m_server->count("/late.png"), 1);
    QTRY_COMPARE(m_browser->locationUrl(), slow);
    QSignalSpy progress(m_browser->page(), &QWebEnginePage::loadProgress);
    m_browser->navigate(m_server->url(path));
    // It is over for the engine.
    QTRY_VERIFY(progress.contains(QVariantList{100}));
    m_server->release();
    QTRY_VERIFY(arrived(slow));
    QTRY_VERIFY(!m_browser->isBusy());
    QCOMPARE(m_browser->locationUrl(), slow);
}

void tst_navigation_engine::notFoundShowsTheServersPage()
{
    const QString url = m_server->url(u"/missing"_s);
    m_browser->navigate(url);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(url));
    QTRY_COMPARE(m_events->titles.last(), u"Not here"_s);
    QCOMPARE(script(u"document.getElementById('missing').textContent"_s), u"Not here"_s);
}

void tst_navigation_engine::refreshCompletelyBypassesTheCache()
{
    TestServer::Reply image;
    image.type = "text/css";
    image.body = "body { color: red }";
    image.headers = {{"Cache-Control", "max-age=3600"}};
    m_server->reply("/style.css", image);
    m_server->page("/styled", "<title>S</title><link rel=stylesheet href=/style.css>");
    const QString url = m_server->url(u"/styled"_s);
    m_browser->navigate(url);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(url));
    QCOMPARE(m_server->count("/style.css"), 1);
    m_browser->refresh();
    QTRY_COMPARE(m_server->count("/styled"), 2);
    QTRY_COMPARE(m_events->count("complete "_L1 + url), 2);
    QTRY_VERIFY(!m_browser->isBusy());
    QCOMPARE(m_server->count("/style.css"), 1);
    m_browser->refresh2(3);
    QTRY_COMPARE(m_events->count("complete "_L1 + url), 3);
    QCOMPARE(m_server->count("/style.css"), 2);
}

void tst_navigation_engine::scriptAddressDoesNotRun()
{
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    m_browser->navigate(u"javascript:document.title='ran'"_s);
    m_browser->navigate(u"  JavaScript:document.title='ran'"_s);
    QCOMPARE(script(u"document.title"_s), u"Page A"_s);
    QCOMPARE(m_browser->locationUrl(), a);
}

void tst_navigation_engine::emptyAddressesAskAndDoNothing_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks") << u"   "_s;
    QTest::newRow("no host") << u"http:///"_s;
}

void tst_navigation_engine::emptyAddressesAskAndDoNothing()
{
    QFETCH(QString, address);
    m_browser->navigate(address);
    QCOMPARE(m_events->lines.size(), 1);
    QVERIFY(m_events->lines.first().startsWith("before "_L1));
    QVERIFY(!m_browser->hasDocument());
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    m_browser->navigate(address);
    QCOMPARE(script(u"document.title"_s), u"Page A"_s);
    QCOMPARE(m_browser->locationUrl(), a);
}

void tst_navigation_engine::textThatIsNoAddressIsTold()
{
    m_browser->navigate(u"hello world"_s);
    QCOMPARE(m_events->statuses.last(), u"This is not an address: hello world"_s);
    QCOMPARE(m_events->titles.last(), u"hello world"_s);
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    m_browser->navigate(u"hello world"_s);
    QCOMPARE(m_events->statuses.last(), u"This is not an address: hello world"_s);
    QCOMPARE(m_browser->locationUrl(), a);
    QCOMPARE(script(u"document.title"_s), u"Page A"_s);
}

void tst_navigation_engine::addressOfAnotherProgramIsTold_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("unknown") << u"foo:bar"_s;
    QTest::newRow("upper case") << u"FOO:bar"_s;
    QTest::newRow("mail") << u"mailto:a@b.example"_s;
    QTest::newRow("telephone") << u"tel:123"_s;
    QTest::newRow("files of old") << u"ftp://127.0.0.1/x"_s;
    QTest::newRow("typing error") << u"htp://127.0.0.1/"_s;
    QTest::newRow("long") << u"foo:"_s + QString(5000, u'x');
}

/// And nothing is started for it: an address can come from a file as well.
void tst_navigation_engine::addressOfAnotherProgramIsTold()
{
    QFETCH(const QString, text);
    const QString told = u"Addresses of this kind are not opened here: "_s + text.left(200);
    m_browser->navigate(text);
    QCOMPARE(m_events->statuses.last(), told);
    QCOMPARE(m_events->titles.last(), text);
    QVERIFY(!m_browser->isBusy());
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    m_browser->navigate(text);
    QCOMPARE(m_events->statuses.last(), told);
    QCOMPARE(m_browser->locationUrl(), a);
    QCOMPARE(script(u"document.title"_s), u"Page A"_s);
    QCOMPARE(m_events->statuses.last(), told);
}

void tst_navigation_engine::markup()
{
    QString seen = u"nothing yet"_s;
    m_browser->outerHtml([&seen](const QString &html) { seen = html; });
    QCOMPARE(seen, QString());
    m_browser->navigate(m_server->url(u"/b"_s));
    QTRY_VERIFY(arrived(m_server->url(u"/b"_s)));
    script(u"document.body.innerHTML = '<p>changed by script</p>'"_s);
    m_browser->outerHtml([&seen](const QString &html) { seen = html; });
    QTRY_COMPARE(
        seen,
        u"<html><head><title>Page B</title></head><body><p>changed by script</p></body></html>"_s);
}

void tst_navigation_engine::statusTexts()
{
    const QString a = m_server->url(u"/a"_s);
    m_browser->navigate(a);
    QTRY_VERIFY(!m_browser->isBusy() && arrived(a));
    QCOMPARE(m_events->statuses.first(), "Opening page "_L1 + a + "..."_L1);
    QCOMPARE(m_events->statuses.last(), u"Done"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_navigation_engine)
#include "tst_navigation_engine.moc"
