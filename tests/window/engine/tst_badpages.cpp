// Addresses and pages that go wrong: the window stays usable, and says clearly what is wrong.
#include "EngineTest.h"
#include "FakeFrame.h"
#include "QtWebBrowser.h"
#include "StatusStrip.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QPushButton>
#include <QTcpServer>
#include <QWebEngineHistory>
#include <QWebEngineView>
#include <QWindow>

using namespace Qt::StringLiterals;

class tst_badpages : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void unreachable_data();
    void unreachable();
    void errorPageIsAsDarkAsTheProgram();
    void tryAgainLoadsThePage();
    void tryAgainByMouse();
    void refreshTriesAgain();
    void backLeavesTheErrorPage();
    void certificateIsRefused();
    void stalledAfterHeaders();
    void neverAnswering();
    void hugeTitle();
    void titleChangingWithoutEnd();
    void endedPageCanBeReloaded();
    void reloadByMouse();

private:
    QString script(const QString &code);
    QtWebBrowser *browser() { return static_cast<QtWebBrowser *>(m_form->browser()); }
    void openAndWait(const QString &url);
    void clickInPage(const QString &id);

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<FakeFrame> m_frame;
    BrowserWindow *m_form = nullptr;
};

void tst_badpages::init()
{
    m_server = std::make_unique<TestServer>();
    m_server->page("/a", "<title>Page A</title>a");
    m_frame = std::make_unique<FakeFrame>();
    m_form = m_frame->open({});
}

void tst_badpages::cleanup()
{
    m_frame.reset();
    m_server.reset();
}

QString tst_badpages::script(const QString &code)
{
    QString result;
    bool answered = false;
    browser()->page()->runJavaScript(code, [&](const QVariant &value) {
        result = value.toString();
        answered = true;
    });
    [&] { QTRY_VERIFY(answered); }();
    return result;
}

void tst_badpages::openAndWait(const QString &url)
{
    browser()->navigate(url);
    QTRY_VERIFY(browser()->hasDocument() && !browser()->isBusy());
}

/// Clicks on an element as a user does, if it is there; a page takes the mouse once it is painted.
void tst_badpages::clickInPage(const QString &id)
{
    const QStringList middle =
        script(
            u"(() => { const r = document.getElementById('%1')?.getBoundingClientRect();"
            "return r ? [r.x + r.width / 2, r.y + r.height / 2].map(Math.round).join() : '' })()"_s
                .arg(id))
            .split(u',');
    if (middle.size() != 2)
        return;
    const QPoint inPage(middle.at(0).toInt(), middle.at(1).toInt());
    QWidget *view = browser()->widget()->findChild<QWebEngineView *>();
    QTest::mouseClick(m_frame->window()->windowHandle(), Qt::LeftButton, {},
                      view->mapTo(m_frame->window(), inPage));
}

void tst_badpages::unreachable_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("reason");
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    QTest::newRow("nobody listens")
        << u"http://127.0.0.1:%1/x?y=1"_s.arg(closed.serverPort()) << u"refused"_s;
    QTest::newRow("no such host") << u"http://nowhere.invalid/"_s << u"no server"_s;
    QTest::newRow("missing file") << u"file:///no/such/file.html"_s << u"no file"_s;
    QTest::newRow("redirect loop") << u"/loop"_s << u"circles"_s;
    QTest::newRow("no answer") << u"/hangup"_s << u"no answer"_s;
}

void tst_badpages::unreachable()
{
    QFETCH(QString, address);
    QFETCH(QString, reason);
    m_server->redirect("/loop", "/loop");
    TestServer::Reply hangUp;
    hangUp.hangUp = true;
    m_server->reply("/hangup", hangUp);
    const QString url = address.startsWith(u'/') ? m_server->url(address) : address;
    openAndWait(url);
    QCOMPARE(browser()->locationUrl(), url);
    QTRY_COMPARE(script(u"document.querySelector('h1').textContent"_s),
                 u"This page cannot be shown"_s);
    const QString text = script(u"document.querySelector('main').innerText"_s);
    QVERIFY2(text.contains(reason), qPrintable(text));
    QCOMPARE(script(u"document.querySelector('code').textContent"_s), url);
    QCOMPARE(script(u"document.getElementById('tryAgain').textContent"_s), u"Try Again"_s);
    QCOMPARE(script(u"document.documentElement.lang"_s), u"en"_s);
    QTRY_VERIFY(m_frame->tabOf(m_form).caption != u"Loading..."_s);
    QCOMPARE(m_frame->addresses.last().url, url);
    QCOMPARE(browser()->page()->history()->count(), 1);
    openAndWait(m_server->url(u"/a"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"Page A"_s);
}

void tst_badpages::errorPageIsAsDarkAsTheProgram()
{
    const QString brightness =
        u"getComputedStyle(document.documentElement).backgroundColor.match(/\\d+/)[0]"_s;
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    for (const bool dark : {false, true}) {
        QApplication::setPalette(QPalette(dark ? QColor(50, 50, 50) : QColor(240, 240, 240)));
        openAndWait(u"http://nowhere.invalid/"_s);
        QTRY_COMPARE(script(u"!!document.getElementById('tryAgain')"_s), u"true"_s);
        QCOMPARE(script(brightness).toInt() < 128, dark);
        openAndWait(m_server->url(u"/a"_s));
        QTRY_COMPARE(m_form->windowTitle(), u"Page A"_s);
    }
}

void tst_badpages::tryAgainLoadsThePage()
{
    TestServer::Reply hangUp;
    hangUp.hangUp = true;
    m_server->reply("/later", hangUp);
    const QString url = m_server->url(u"/later"_s);
    openAndWait(url);
    QTRY_COMPARE(script(u"!!document.getElementById('tryAgain')"_s), u"true"_s);
    m_server->page("/later", "<title>At last</title>");
    script(u"document.getElementById('tryAgain').click()"_s);
    QTRY_COMPARE(m_form->windowTitle(), u"At last"_s);
    QCOMPARE(browser()->locationUrl(), url);
    QCOMPARE(browser()->page()->history()->count(), 1);
}

void tst_badpages::tryAgainByMouse()
{
    TestServer::Reply hangUp;
    hangUp.hangUp = true;
    m_server->reply("/later", hangUp);
    QVERIFY(QTest::qWaitForWindowActive(m_frame->window()));
    openAndWait(m_server->url(u"/later"_s));
    QTRY_COMPARE(script(u"!!document.getElementById('tryAgain')"_s), u"true"_s);
    m_server->page("/later", "<title>At last</title>");
    QTRY_VERIFY([&] {
        if (m_form->windowTitle() != "At last"_L1)
            clickInPage(u"tryAgain"_s);
        return m_form->windowTitle() == "At last"_L1;
    }());
}

void tst_badpages::refreshTriesAgain()
{
    TestServer::Reply hangUp;
    hangUp.hangUp = true;
    m_server->reply("/later", hangUp);
    openAndWait(m_server->url(u"/later"_s));
    QTRY_COMPARE(script(u"!!document.getElementById('tryAgain')"_s), u"true"_s);
    m_server->page("/later", "<title>At last</title>");
    browser()->refresh();
    QTRY_COMPARE(m_form->windowTitle(), u"At last"_s);
}

void tst_badpages::backLeavesTheErrorPage()
{
    TestServer::Reply hangUp;
    hangUp.hangUp = true;
    m_server->reply("/bad", hangUp);
    openAndWait(m_server->url(u"/a"_s));
    browser()->navigate(m_server->url(u"/bad"_s));
    QTRY_COMPARE(browser()->locationUrl(), m_server->url(u"/bad"_s));
    QTRY_VERIFY(!browser()->isBusy());
    QVERIFY(browser()->goBack());
    QTRY_COMPARE(browser()->locationUrl(), m_server->url(u"/a"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"Page A"_s);
}

void tst_badpages::certificateIsRefused()
{
    TestServer secure(TestServer::Kind::Https);
    secure.page("/", "<title>Secret</title>");
    openAndWait(secure.url());
    QTRY_VERIFY(script(u"document.querySelector('main').innerText"_s).contains(u"certificate"_s));
    QVERIFY(!m_form->statusBar()->secureShown());
    QCOMPARE(secure.count("/"), 0);
}

void tst_badpages::stalledAfterHeaders()
{
    TestServer::Reply stalled;
    stalled.stallAfterHeaders = true;
    stalled.body = "<title>Half</title><p>half";
    m_server->reply("/half", stalled);
    browser()->navigate(m_server->url(u"/half"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"Half"_s);
    QVERIFY(browser()->isBusy());
    QCOMPARE(browser()->locationUrl(), m_server->url(u"/half"_s));
    browser()->navigate(m_server->url(u"/a"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"Page A"_s);
    QTRY_VERIFY(!browser()->isBusy());
}

void tst_badpages::neverAnswering()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_server->reply("/never", silent);
    browser()->navigate(m_server->url(u"/never"_s));
    QTRY_COMPARE(m_server->count("/never"), 1);
    QTRY_VERIFY(m_form->statusBar()->text().startsWith(u" Opening page "_s));
    browser()->navigate(m_server->url(u"/a"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"Page A"_s);
    QTRY_COMPARE(m_form->statusBar()->text(), u" Done"_s);
}

void tst_badpages::hugeTitle()
{
    m_server->page("/", "<title>" + QByteArray(1000000, 'x') + "</title>x");
    openAndWait(m_server->url());
    QTRY_COMPARE(m_frame->tabOf(m_form).caption, u"Xxxxxxxxxx..."_s);
    QVERIFY(m_form->windowTitle().size() <= 4096);
}

void tst_badpages::titleChangingWithoutEnd()
{
    m_server->page("/",
                   "<title>start</title><script>let n = 0;"
                   "function step() { for (let i = 0; i < 10; ++i) document.title = 'n' + ++n;"
                   "if (n < 3000) setTimeout(step, 0); else document.title = 'the end'; }"
                   "onload = step</script>");
    openAndWait(m_server->url());
    int seen = 0;
    connect(m_form, &QWidget::windowTitleChanged, this, [&seen] { ++seen; });
    QTRY_COMPARE_WITH_TIMEOUT(m_form->windowTitle(), u"the end"_s, 20000);
    QVERIFY2(seen < 1000, qPrintable(QString::number(seen)));
}

void tst_badpages::endedPageCanBeReloaded()
{
    openAndWait(m_server->url(u"/a"_s));
    browser()->page()->load(QUrl(u"chrome://kill"_s));
    QPushButton *reload = nullptr;
    QTRY_VERIFY((reload = m_form->findChild<QPushButton *>(u"cmdReload"_s)));
    QVERIFY(!browser()->isBusy());
    const int before = m_server->count("/a");
    browser()->navigate(m_server->url(u"/a"_s));
    QTRY_COMPARE(m_server->count("/a"), before + 1);
    QTRY_VERIFY(!m_form->findChild<QPushButton *>(u"cmdReload"_s));
}

void tst_badpages::reloadByMouse()
{
    openAndWait(m_server->url(u"/a"_s));
    QVERIFY(QTest::qWaitForWindowActive(m_frame->window()));
    browser()->page()->load(QUrl(u"chrome://kill"_s));
    QPushButton *reload = nullptr;
    QTRY_VERIFY((reload = m_form->findChild<QPushButton *>(u"cmdReload"_s)));
    QTRY_VERIFY(reload->isVisible() && !reload->visibleRegion().isEmpty());
    const int before = m_server->count("/a");
    QTest::mouseClick(m_frame->window()->windowHandle(), Qt::LeftButton, {},
                      reload->mapTo(m_frame->window(), reload->rect().center()));
    QTRY_COMPARE(m_server->count("/a"), before + 1);
    QTRY_VERIFY(!m_form->findChild<QPushButton *>(u"cmdReload"_s));
    QTRY_VERIFY(!browser()->isBusy());
    QCOMPARE(browser()->locationUrl(), m_server->url(u"/a"_s));
    QCOMPARE(m_form->windowTitle(), u"Page A"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_badpages)
#include "tst_badpages.moc"
