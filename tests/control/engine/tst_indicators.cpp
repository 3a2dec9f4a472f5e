// The two indicators of a page: its connection is secure; cookies of other sites were refused.
#include "ControlScene.h"
#include "CookiePolicy.h"
#include "EngineTest.h"
#include "PageIndicators.h"
#include "TestCertificates.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class tst_indicators : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void validCertificateIsSecure();
    void plainPageIsNotSecure();
    void secureWhileThePageStillLoads();
    void nextPageIsJudgedAnew();
    void selfSignedIsRefused();
    void mixedContentIsNotSecure();
    void noMoreSecureOnceAnotherPageIsShown();
    void sameSiteCookiesAreKept();
    void cookieOfAnotherSiteIsRefused();
    void nextPageClearsPrivacy();
    void sameSiteNextPageClearsPrivacy();
    void refusalBeforeThePageIsShown();

private:
    std::unique_ptr<TestServer> secureServer()
    {
        return std::make_unique<TestServer>(TestCertificates::server(m_folder.path()));
    }
    void setTracker();

    QTemporaryDir m_folder;
    std::unique_ptr<ControlScene> m_scene;
    /// Another site than that of the scene.
    std::unique_ptr<TestServer> m_other;
};

void tst_indicators::initTestCase()
{
    const QString wrong = TestCertificates::make(m_folder.path(), QDir::homePath());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_indicators::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_scene->server.page("/a", "<title>Page A</title>a");
    m_other = std::make_unique<TestServer>();
    setTracker();
}

void tst_indicators::cleanup()
{
    m_scene.reset();
    m_other.reset();
}

/// A page whose image comes from another site and with a cookie.
void tst_indicators::setTracker()
{
    TestServer::Reply image;
    image.type = "image/svg+xml";
    image.body = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
    image.headers = {{"Set-Cookie", "track=1; Path=/"}};
    m_other->reply("/image.svg", image);
    m_scene->server.reply("/own.svg", image);
    m_scene->server.page("/tracked",
                         "<title>Tracked</title><img src='"
                             + m_other->url(u"/image.svg"_s, u"localhost"_s).toUtf8() + "'>");
    m_scene->server.page("/own", "<title>Own</title><img src=/own.svg>");
}

void tst_indicators::validCertificateIsSecure()
{
    const auto server = secureServer();
    server->page("/a", "<title>Secure</title>");
    m_scene->open(server->url(u"/a"_s, u"localhost"_s));
    QTRY_COMPARE(m_scene->events.titles.last(), u"Secure"_s);
    QVERIFY(m_scene->events.secure);
}

void tst_indicators::plainPageIsNotSecure()
{
    m_scene->open(m_scene->server.url(u"/a"_s));
    QVERIFY(!m_scene->events.secure);
}

void tst_indicators::secureWhileThePageStillLoads()
{
    const auto server = secureServer();
    TestServer::Reply silent;
    silent.silent = true;
    server->reply("/never.png", silent);
    server->page("/slow", "<title>Slow</title><img src=/never.png>");
    m_scene->browser->navigate(server->url(u"/slow"_s));
    QTRY_VERIFY(m_scene->events.secure);
    QVERIFY(m_scene->browser->isBusy());
}

void tst_indicators::nextPageIsJudgedAnew()
{
    const auto server = secureServer();
    server->page("/a", "<title>Secure</title>");
    m_scene->open(server->url(u"/a"_s));
    QVERIFY(m_scene->events.secure);
    m_scene->open(m_scene->server.url(u"/a"_s));
    QVERIFY(!m_scene->events.secure);
    QVERIFY(m_scene->browser->goBack());
    m_scene->waitFor(server->url(u"/a"_s));
    QTRY_VERIFY(m_scene->events.secure);
    m_scene->open(u"http://127.0.0.1:1/"_s);
    QVERIFY(!m_scene->events.secure);
}

void tst_indicators::selfSignedIsRefused()
{
    TestServer server(TestServer::Kind::Https);
    server.page("/a", "<title>Never</title>");
    m_scene->open(server.url(u"/a"_s));
    QTRY_COMPARE(m_scene->script(u"document.querySelector('h1').textContent"_s),
                 u"This page cannot be shown"_s);
    QVERIFY(m_scene->script(u"document.body.textContent"_s).contains("certificate"_L1));
    QVERIFY(!m_scene->events.secure);
    QCOMPARE(server.count("/a"), 0);
}

void tst_indicators::mixedContentIsNotSecure()
{
    const auto server = secureServer();
    // A form that sends what is typed over a plain connection.
    server->page("/mixed",
                 "<title>Mixed</title><form action='http://example.invalid/x'><input></form>"
                 "<img src='http://example.invalid/x.png'>");
    m_scene->open(server->url(u"/mixed"_s, u"localhost"_s));
    QTRY_COMPARE(m_scene->events.titles.last(), u"Mixed"_s);
    QTRY_VERIFY(!m_scene->events.secure);
}

void tst_indicators::noMoreSecureOnceAnotherPageIsShown()
{
    PageIndicators indicators(nullptr);
    QList<bool> told;
    connect(&indicators, &PageIndicators::secureChanged, this,
            [&told](bool secure) { told.append(secure); });
    indicators.reset(QUrl(u"https://one/"_s), true);
    indicators.distrust();
    QCOMPARE(told, (QList<bool>{true, false}));
    indicators.reset(QUrl(u"https://two/"_s), true);
    QCOMPARE(told, (QList<bool>{true, false, true}));
}

void tst_indicators::sameSiteCookiesAreKept()
{
    m_scene->open(m_scene->server.url(u"/own"_s));
    m_scene->open(m_scene->server.url(u"/own"_s));
    QTRY_COMPARE(m_scene->server.count("/own.svg"), 2);
    QCOMPARE(m_scene->server.requests("/own.svg").last().headers.value("cookie"), "track=1");
    QVERIFY(!m_scene->events.privacy);
}

void tst_indicators::cookieOfAnotherSiteIsRefused()
{
    m_scene->open(m_scene->server.url(u"/tracked"_s));
    QTRY_VERIFY(m_scene->events.privacy);
    m_scene->browser->refresh();
    QTRY_COMPARE(m_other->count("/image.svg"), 2);
    QVERIFY(!m_other->requests("/image.svg").last().headers.contains("cookie"));
    QTRY_VERIFY(m_scene->events.privacy);
}

void tst_indicators::nextPageClearsPrivacy()
{
    m_scene->open(m_scene->server.url(u"/tracked"_s));
    QTRY_VERIFY(m_scene->events.privacy);
    m_other->page("/b", "<title>B</title>");
    m_scene->open(m_other->url(u"/b"_s, u"localhost"_s));
    QVERIFY(!m_scene->events.privacy);
}

void tst_indicators::sameSiteNextPageClearsPrivacy()
{
    m_scene->open(m_scene->server.url(u"/tracked"_s));
    QTRY_VERIFY(m_scene->events.privacy && !m_scene->browser->isBusy());
    m_scene->open(m_scene->server.url(u"/a"_s));
    QVERIFY(!m_scene->events.privacy);
}

void tst_indicators::refusalBeforeThePageIsShown()
{
    PageIndicators indicators(nullptr);
    QList<bool> told;
    connect(&indicators, &PageIndicators::privacyImpacted, this,
            [&told](bool impacted) { told.append(impacted); });
    indicators.reset(QUrl(u"http://one/"_s));
    indicators.expect(QUrl(u"http://two/"_s));
    emit CookiePolicy::instance().refused(u"two"_s);
    QVERIFY(told.isEmpty());
    indicators.distrust();
    QVERIFY(told.isEmpty());
    indicators.reset(QUrl(u"http://two/"_s));
    QCOMPARE(told, QList<bool>{true});
    // On the same host it may be either's, and nothing is kept quiet.
    indicators.expect(QUrl(u"http://two/other"_s));
    emit CookiePolicy::instance().refused(u"two"_s);
    indicators.reset(QUrl(u"http://two/other"_s));
    QCOMPARE(told, QList<bool>{true});
    indicators.expect(QUrl(u"http://two/third"_s));
    indicators.reset(QUrl(u"http://two/third"_s));
    QCOMPARE(told, (QList<bool>{true, false}));
}

ORVANE_ENGINE_TEST_MAIN(tst_indicators)
#include "tst_indicators.moc"
