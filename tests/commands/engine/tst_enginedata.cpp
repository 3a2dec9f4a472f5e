// What the engine keeps of the pages that were shown, listed and cleared by the internet options.
#include "../EngineSession.h"
#include "CookieFile.h"
#include "CookieList.h"
#include "EngineTest.h"

#include <QLabel>
#include <QMessageBox>
#include <QTreeWidget>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

class tst_enginedata : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { finish(); }
    void cookiesAreListedAndDeleted();
    void cookiesOfAnEarlierSessionAreListed();
    void allCookiesAreDeleted();
    void cacheIsMeasuredAndCleared();
    void clearingTheCacheLeavesLoadsAlone();
    void visitedLinksAreCleared();

private:
    /// "site/name" as the dialog has them.
    static QStringList listedCookies();
    static QString cacheText() { return find<QLabel>("lblCacheUsed")->text(); }
};

QStringList tst_enginedata::listedCookies()
{
    QStringList result;
    const auto *tree = find<QTreeWidget>("lstCookies");
    for (int index = 0; index < tree->topLevelItemCount(); ++index) {
        const QTreeWidgetItem &site = *tree->topLevelItem(index);
        for (int child = 0; child < site.childCount(); ++child)
            result.append(site.text(0) + u'/' + site.child(child)->text(0));
    }
    return result;
}

static TestServer::Reply withCookies()
{
    TestServer::Reply reply;
    reply.body = "<title>c</title>";
    reply.headers = {{"Set-Cookie", "session=1"},
                     {"Set-Cookie", "lasting=1; Max-Age=100000"},
                     {"Set-Cookie", "deep=1; Path=/deep"}};
    return reply;
}

void tst_enginedata::cookiesAreListedAndDeleted()
{
    m_session->server.reply("/c", withCookies());
    start();
    go(url(u"/c"_s));
    openGeneral();
    QTRY_COMPARE(
        listedCookies(),
        QStringList({u"127.0.0.1/deep"_s, u"127.0.0.1/lasting"_s, u"127.0.0.1/session"_s}));
    auto *tree = find<QTreeWidget>("lstCookies");
    tree->expandAll();
    tree->setCurrentItem(tree->topLevelItem(0)->child(1));
    press("cmdDeleteCookies");
    QTRY_COMPARE(listedCookies(), QStringList({u"127.0.0.1/deep"_s, u"127.0.0.1/session"_s}));
    form()->close();
    go(url(u"/one"_s));
    QCOMPARE(header("cookie"), "session=1");
}

void tst_enginedata::cookiesOfAnEarlierSessionAreListed()
{
    m_session->server.reply("/c", withCookies());
    start();
    go(url(u"/c"_s));
    QTRY_COMPARE(engineCookies()->cookies().size(), 3);
    const QString file = engineProfile()->persistentStoragePath() + "/Cookies"_L1;
    stop();
    // The engine writes them as its profile ends.
    QTRY_VERIFY(!readCookieFile(file).isEmpty());
    start();
    openGeneral();
    QTRY_COMPARE(listedCookies(), QStringList(u"127.0.0.1/lasting"_s));
    auto *tree = find<QTreeWidget>("lstCookies");
    tree->setCurrentItem(tree->topLevelItem(0));
    press("cmdDeleteCookies");
    QTRY_COMPARE(listedCookies(), QStringList());
    form()->close();
    m_session->server.forgetRequests();
    go(url(u"/one"_s));
    QVERIFY(!header("cookie").contains("lasting"));
}

void tst_enginedata::allCookiesAreDeleted()
{
    m_session->server.reply("/c", withCookies());
    start();
    go(url(u"/c"_s));
    go(m_session->server.url(u"/c"_s, u"localhost"_s));
    openGeneral();
    QTRY_COMPARE(listedCookies().size(), 6);
    press("cmdDeleteAllCookies");
    QTRY_VERIFY(form()->findChild<QMessageBox *>());
    QTest::mouseClick(form()->findChild<QMessageBox *>()->button(QMessageBox::Yes), Qt::LeftButton);
    QTRY_VERIFY(listedCookies().isEmpty());
    form()->close();
    go(url(u"/one"_s));
    QCOMPARE(header("cookie"), QByteArray());
}

static TestServer::Reply cached(const QByteArray &body)
{
    TestServer::Reply reply;
    reply.body = body;
    reply.headers = {{"Cache-Control", "max-age=3600"}};
    return reply;
}

void tst_enginedata::cacheIsMeasuredAndCleared()
{
    m_session->server.reply("/big", cached("<title>big</title>" + QByteArray(300'000, 'x')));
    start();
    go(url(u"/big"_s));
    go(url(u"/one"_s));
    go(url(u"/big"_s));
    QCOMPARE(m_session->server.count("/big"), 1);
    openGeneral();
    QTRY_VERIFY(cacheText().startsWith("In use: 29"_L1) || cacheText().startsWith("In use: 3"_L1));
    press("cmdClearCache");
    QTRY_VERIFY2(cacheText().endsWith("bytes"_L1), qPrintable(cacheText()));
    form()->close();
    go(url(u"/one"_s));
    go(url(u"/big"_s));
    QCOMPARE(m_session->server.count("/big"), 2);
    go(url(u"/one"_s));
    go(url(u"/big"_s));
    QCOMPARE(m_session->server.count("/big"), 2);
}

void tst_enginedata::clearingTheCacheLeavesLoadsAlone()
{
    m_session->server.reply("/c", withCookies());
    m_session->server.reply("/kept", cached("<title>k</title>"));
    TestServer::Reply stalled;
    stalled.stallAfterHeaders = true;
    m_session->server.reply("/stalled", stalled);
    m_session->server.page("/now", "now");
    start();
    go(url(u"/kept"_s));
    go(url(u"/c"_s));
    script(
        u"fetch('/stalled').then(r => r.text()).then(() => 0, () => document.title = 'lost'); 0"_s);
    QTRY_COMPARE(m_session->server.count("/stalled"), 1);
    openGeneral();
    press("cmdClearCache");
    QTRY_VERIFY(cacheText().endsWith("bytes"_L1));
    form()->close();
    script(
        u"fetch('/now').then(r => document.title += ' now', () => document.title = 'lost'); 0"_s);
    QTRY_COMPARE(script(u"document.title"_s), u"c now"_s);
    QVERIFY2(
        m_session->server.requests("/now").value(0).headers.value("cookie").contains("session"),
        "cookies of the session stay");
}

void tst_enginedata::visitedLinksAreCleared()
{
    start();
    go(url(u"/one"_s));
    QTRY_VERIFY(engineProfile()->visitedLinksContainsUrl(QUrl(url(u"/one"_s))));
    openGeneral();
    press("cmdClearLinks");
    QTRY_VERIFY(!engineProfile()->visitedLinksContainsUrl(QUrl(url(u"/one"_s))));
}

ORVANE_ENGINE_TEST_MAIN(tst_enginedata)
#include "tst_enginedata.moc"
