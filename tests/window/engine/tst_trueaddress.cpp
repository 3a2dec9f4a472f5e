// The address bar says whose page the window shows: not whose it is going to show, and not what the
// page that opened the window would like to be read over its own work.
#include "EngineTest.h"
#include "PopupScene.h"
#include "StatusStrip.h"

#include <QMdiArea>

using namespace Qt::StringLiterals;

class tst_trueaddress : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void openersContentsHaveNoOtherAddress_data();
    void openersContentsHaveNoOtherAddress();
    void untouchedWindowShowsWhereItIsGoing();
    void touchedLaterLosesTheAddress();
    void shownPageKeepsItsAddress_data();
    void shownPageKeepsItsAddress();
    void stepBackThatHangsIsNotShown_data();
    void stepBackThatHangsIsNotShown();
    void stalledPageOfAnotherSiteIsNamedAtOnce();
    void activationAlwaysSetsTheAddress();
    void popupBehindLeavesTheBar();
    void addressNotReachedIsTakenBack_data();
    void addressNotReachedIsTakenBack();
    void addressOfAFirstLoadStays();

private:
    QString bank(const QString &path) const { return m_bank->url(path, u"localhost"_s); }
    QString own(const QString &path) const { return m_scene->server.url(path); }
    QString shown() const { return m_scene->frame.addressText; }
    void run(const BrowserWindow *form, const QString &code)
    {
        PopupScene::script(form, QString(code).replace("BANK"_L1, bank({})) + u"; 1"_s);
    }
    BrowserWindow *openPopup(const QString &code);

    std::unique_ptr<PopupScene> m_scene;
    std::unique_ptr<TestServer> m_bank;
    BrowserWindow *m_opener = nullptr;
};

void tst_trueaddress::init()
{
    m_scene = std::make_unique<PopupScene>();
    m_bank = std::make_unique<TestServer>();
    QVERIFY(m_scene->isReady());
    TestServer::Reply silent;
    silent.silent = true;
    TestServer::Reply nothing;
    nothing.status = 204;
    TestServer::Reply file;
    file.type = "application/x-orvane-test";
    file.headers = {{"Content-Disposition", "attachment; filename=file.bin"}};
    file.body = "file";
    TestServer::Reply stalled;
    stalled.stallAfterHeaders = true;
    stalled.body = "<title>Stalled</title><p>stalled" + QByteArray(5000, ' ');
    for (TestServer *server : {&m_scene->server, m_bank.get()}) {
        server->reply("/hang", silent);
        server->reply("/nothing", nothing);
        server->reply("/file", file);
        server->reply("/stalled", stalled);
        server->redirect("/tofile", "/file");
        server->page("/page", "<title>Page</title>page");
    }
    m_opener = m_scene->openPage("opener");
}

void tst_trueaddress::cleanup()
{
    m_scene.reset();
    m_bank.reset();
}

BrowserWindow *tst_trueaddress::openPopup(const QString &code)
{
    run(m_opener, code);
    return m_scene->waitForPopup();
}

void tst_trueaddress::openersContentsHaveNoOtherAddress_data()
{
    QTest::addColumn<QString>("open");
    QTest::addColumn<QString>("then");
    const QString fake = u"w.document.write('<title>FAKE</title><p id=fake>FAKE LOGIN')"_s;
    QTest::newRow("written on the way") << u"w = window.open('BANK/hang'); "_s + fake << QString();
    QTest::newRow("body filled on the way")
        << u"w = window.open('BANK/hang'); w.document.body.innerHTML = '<p id=fake>FAKE'"_s
        << u"w.document.title = 'FAKE'"_s;
    QTest::newRow("filled, then sent")
        << u"w = window.open(''); "_s + fake << u"w.location = 'BANK/hang'"_s;
    QTest::newRow("sent, then filled") << u"w = window.open(''); w.location = 'BANK/hang'"_s
                                       << fake + u"; w.location = 'BANK/hang'"_s;
    QTest::newRow("sent by its name")
        << u"w = window.open('', 'named'); "_s + fake << u"window.open('BANK/hang', 'named')"_s;
    QTest::newRow("script address, then sent")
        << u"w = window.open('javascript:\"<title>FAKE</title><p id=fake>FAKE\"')"_s
        << u"w.location = 'BANK/hang'"_s;
    QTest::newRow("sent, then script address")
        << u"w = window.open('BANK/hang')"_s
        << u"w.location = 'javascript:\"<title>FAKE</title><p id=fake>FAKE\"'"_s;
    QTest::newRow("blank, filled, then sent")
        << u"w = window.open('about:blank')"_s << fake + u"; w.location = 'BANK/hang'"_s;
    // Without contents such a window would go by itself.
    QTest::newRow("sent to nothing") << u"w = window.open('BANK/nothing'); "_s + fake << QString();
    QTest::newRow("sent to a file") << u"w = window.open('BANK/tofile'); "_s + fake << QString();
    QTest::newRow("filled, then replaced")
        << u"w = window.open(''); "_s + fake << u"w.location.replace('BANK/hang')"_s;
    QTest::newRow("filled, then a form sent")
        << u"w = window.open('', 'named'); "_s + fake
        << u"const f = document.body.appendChild(document.createElement('form'));"
           u"f.action = 'BANK/hang'; f.method = 'post'; f.target = 'named'; f.submit()"_s;
    QTest::newRow("history state") << u"w = window.open('BANK/hang'); "
                                      u"try { w.history.pushState(0, '', 'x') } catch { }"_s
                                   << fake;
}

void tst_trueaddress::openersContentsHaveNoOtherAddress()
{
    QFETCH(const QString, open);
    QFETCH(const QString, then);
    BrowserWindow *popup = openPopup(open);
    QVERIFY(popup);
    if (open.contains("nothing"_L1) || open.contains("file"_L1))
        QTRY_VERIFY(!popup->browser()->isBusy());
    run(m_opener, then);
    QTRY_COMPARE(popup->windowTitle(), u"FAKE"_s);
    QTRY_COMPARE(PopupScene::script(m_opener, u"String(!!w.document.querySelector('#fake'))"_s),
                 u"true"_s);
    const QStringList honest{u"about:blank"_s, own(u"/opener"_s)};
    m_scene->frame.area->setActiveSubWindow(popup);
    for (int round = 0; round < 3; ++round) {
        QTRY_VERIFY2(honest.contains(shown()), qPrintable(shown()));
        QVERIFY2(honest.contains(popup->shownAddress()), qPrintable(popup->shownAddress()));
        QVERIFY(!popup->browser()->locationUrl().contains("localhost"_L1));
        QVERIFY(!popup->statusBar()->secureShown());
        // Activating it anew changes nothing, nor does what is still on its way.
        m_scene->frame.area->setActiveSubWindow(m_opener);
        QTRY_COMPARE(shown(), own(u"/opener"_s));
        m_scene->frame.area->setActiveSubWindow(popup);
        run(m_opener, u"1"_s);
    }
}

void tst_trueaddress::untouchedWindowShowsWhereItIsGoing()
{
    const BrowserWindow *popup = openPopup(u"w = window.open('BANK/hang')"_s);
    QVERIFY(popup);
    QTRY_COMPARE(shown(), bank(u"/hang"_s));
    QCOMPARE(popup->browser()->locationUrl(), QString());
    popup->browser()->stop();
    QTRY_COMPARE(shown(), u"about:blank"_s);
}

void tst_trueaddress::touchedLaterLosesTheAddress()
{
    QVERIFY(openPopup(u"w = window.open('BANK/hang')"_s));
    QTRY_COMPARE(shown(), bank(u"/hang"_s));
    run(m_opener, u"w.document.body.append('FAKE')"_s);
    QTRY_COMPARE(shown(), u"about:blank"_s);
}

void tst_trueaddress::shownPageKeepsItsAddress_data()
{
    QTest::addColumn<QString>("then");
    QTest::newRow("sent elsewhere") << u"w.location = '%1/hang'"_s;
    QTest::newRow("sent by its name") << u"window.open('%1/hang', 'named')"_s;
    QTest::newRow("sent to nothing") << u"w.location = '%1/nothing'"_s;
    QTest::newRow("sent to a file") << u"w.location = '%1/tofile'"_s;
    QTest::newRow("sent to a program") << u"w.location = 'mailto:a@b.example'"_s;
    QTest::newRow("sent to data") << u"w.location = 'data:text/html,FAKE'"_s;
    QTest::newRow("written anew")
        << u"try { w.document.open(); w.document.write('FAKE') } catch { }"_s;
}

/// The window shows the bank's page, and nothing that its opener can do has another one's name over
/// it, or the bank's over another page.
void tst_trueaddress::shownPageKeepsItsAddress()
{
    QFETCH(const QString, then);
    const BrowserWindow *popup = openPopup(u"w = window.open('BANK/page', 'named')"_s);
    QVERIFY(popup);
    QTRY_COMPARE(popup->browser()->locationUrl(), bank(u"/page"_s));
    QTRY_VERIFY(!popup->browser()->isBusy());
    run(m_opener, then.arg(own({})));
    if (then.contains("%1"_L1))
        QTRY_COMPARE(m_scene->server.requests().last().path.startsWith("/opener"), false);
    run(popup, u"1"_s);
    QCOMPARE(PopupScene::script(popup, u"location.href"_s).toString(), bank(u"/page"_s));
    QCOMPARE(popup->browser()->locationUrl(), bank(u"/page"_s));
    QCOMPARE(shown(), bank(u"/page"_s));
}

/// The engine's history counts a step at once, however long it takes.
void tst_trueaddress::stepBackThatHangsIsNotShown_data()
{
    QTest::addColumn<QString>("place");
    QTest::newRow("page") << QString();
    QTest::newRow("place in the page, typed") << u"#place"_s;
}

void tst_trueaddress::stepBackThatHangsIsNotShown()
{
    QFETCH(const QString, place);
    bool answers = true;
    m_bank->handle("/once", [&answers](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.headers = {{"Cache-Control", "no-store"}};
        reply.body = "<title>Bank</title>bank";
        reply.silent = !answers;
        return reply;
    });
    m_opener->browser()->navigate(bank(u"/once"_s));
    QTRY_COMPARE(m_opener->browser()->locationUrl(), bank(u"/once"_s));
    QTRY_VERIFY(!m_opener->browser()->isBusy());
    answers = false;
    m_scene->server.page("/steps", "<title>Steps</title>FAKE");
    m_opener->browser()->navigate(own(u"/steps"_s));
    QTRY_COMPARE(shown(), own(u"/steps"_s));
    QTRY_VERIFY(!m_opener->browser()->isBusy());
    if (!place.isEmpty()) {
        m_opener->browser()->navigate(own(u"/steps"_s) + place);
        QTRY_COMPARE(shown(), own(u"/steps"_s) + place);
    }
    run(m_opener,
        u"history.go(%1); setInterval(() => history.replaceState(0, '', '?' + Math.random() + location.hash), 50)"_s
            .arg(place.isEmpty() ? -1 : -2));
    QTRY_COMPARE(m_bank->count("/once"), 2);
    QTRY_VERIFY(m_opener->browser()->locationUrl().startsWith(own(u"/steps"_s)));
    run(m_opener, u"history.replaceState(0, '', '/steps' + location.hash)"_s);
    QVERIFY2(!shown().contains("once"_L1), qPrintable(shown()));
    QVERIFY(shown().startsWith(own(u"/steps"_s)));
}

void tst_trueaddress::stalledPageOfAnotherSiteIsNamedAtOnce()
{
    m_opener->browser()->navigate(bank(u"/page"_s));
    QTRY_COMPARE(shown(), bank(u"/page"_s));
    run(m_opener, u"location = '"_s + own(u"/stalled"_s) + u"'"_s);
    QTRY_COMPARE(shown(), own(u"/stalled"_s));
    QCOMPARE(m_opener->browser()->locationUrl(), own(u"/stalled"_s));
}

void tst_trueaddress::activationAlwaysSetsTheAddress()
{
    run(m_opener, u"setTimeout(() => w = window.open(''), 10)"_s);
    BrowserWindow *popup = m_scene->waitForPopup();
    QVERIFY(popup);
    m_scene->frame.area->setActiveSubWindow(m_opener);
    QTRY_COMPARE(shown(), own(u"/opener"_s));
    m_scene->frame.area->setActiveSubWindow(popup);
    QTRY_COMPARE(shown(), u"about:blank"_s);
    // Also with its tab down already, and whatever stood there.
    m_scene->frame.area->setActiveSubWindow(m_opener);
    m_scene->frame.tabs.setPressed(popup->tabKey(), true);
    m_scene->frame.addressText = u"http://left.over/"_s;
    m_scene->frame.area->setActiveSubWindow(popup);
    QTRY_COMPARE(shown(), u"about:blank"_s);
}

void tst_trueaddress::popupBehindLeavesTheBar()
{
    BrowserWindow *popup = openPopup(u"w = window.open('', 'named')"_s);
    QVERIFY(popup);
    m_scene->frame.area->setActiveSubWindow(m_opener);
    QTRY_COMPARE(shown(), own(u"/opener"_s));
    run(m_opener, u"w.location = 'BANK/page'"_s);
    QTRY_COMPARE(popup->browser()->locationUrl(), bank(u"/page"_s));
    QTRY_VERIFY(!popup->browser()->isBusy());
    QCOMPARE(shown(), own(u"/opener"_s));
}

void tst_trueaddress::addressNotReachedIsTakenBack_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("stopped") << u"/hang"_s;
    QTest::newRow("nothing") << u"/nothing"_s;
    QTest::newRow("file") << u"/file"_s;
    QTest::newRow("redirected to a file") << u"/tofile"_s;
}

void tst_trueaddress::addressNotReachedIsTakenBack()
{
    QFETCH(const QString, path);
    // As after Enter in the bar.
    m_scene->frame.addressText = bank(path);
    m_opener->browser()->navigate(bank(path));
    QTRY_VERIFY(!m_bank->requests().isEmpty());
    if (path == "/hang"_L1)
        m_opener->browser()->stop();
    QTRY_COMPARE(shown(), own(u"/opener"_s));
    QCOMPARE(m_opener->browser()->locationUrl(), own(u"/opener"_s));
    QVERIFY(!m_opener->browser()->isBusy());
}

void tst_trueaddress::addressOfAFirstLoadStays()
{
    const BrowserWindow *form = m_scene->frame.open(bank(u"/hang"_s));
    QTRY_COMPARE(m_bank->count("/hang"), 1);
    QCOMPARE(shown(), bank(u"/hang"_s));
    form->browser()->stop();
    QTRY_VERIFY(!form->browser()->isBusy());
    QCOMPARE(shown(), bank(u"/hang"_s));
}

ORVANE_ENGINE_TEST_MAIN(tst_trueaddress)
#include "tst_trueaddress.moc"
