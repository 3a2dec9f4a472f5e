// Servers that cannot prove who they are.
#include "CertificateDetails.h"
#include "CertificateExceptions.h"
#include "CertificateNotice.h"
#include "ConnectionCheck.h"
#include "ControlScene.h"
#include "CrashNotice.h"
#include "EngineTest.h"
#include "Gate.h"
#include "TestCertificates.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QWebEngineView>

using namespace Qt::StringLiterals;
using TestCertificates::Shape;
using TestCertificates::Signer;

class tst_certificates : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void reasons_data();
    void reasons();
    void addressIsTheFailedOne();
    void backGoesBack();
    void backWithoutHistory();
    void keysGoBack_data();
    void keysGoBack();
    void goOnTakesTime();
    void goOnOpensThePage();
    void goOnHoldsForTheProgram();
    void goOnIsForThatCertificateAlone();
    void goOnIsForThatFlawAlone();
    void goOnSendsTheForm();
    void redirectToBadHost();
    void redirectsWithoutEnd();
    void partsAreRefusedInSilence();
    void framesAreRefusedInSilence();
    void unprovenPartTakesTheLock();
    void unprovenPartIsForgottenWithItsPage();
    void partThatIsAnsweredLateTakesTheLock();
    void strictSiteOffersNoWay();
    void goOnAfterAnotherPageCame();
    void unreadableCertificateOffersNoWay();
    void anotherErrorIsNoFailure();
    void stepsThroughTheHistory();
    void downloadIsRefused();
    void crashBehindTheNotice();
    void controlEndsWithTheNotice();
    void detailsShowTheChain();
    void askedServerIsLeft();

private:
    void openBad(const TestServer &server, const QString &path = u"/a"_s)
    {
        m_scene->browser->navigate(server.url(path, u"localhost"_s));
        QTRY_VERIFY(notice());
    }
    void goOn()
    {
        QVERIFY(button(u"cmdGoOn"_s));
        QTRY_VERIFY(button(u"cmdGoOn"_s)->isEnabled());
        button(u"cmdGoOn"_s)->click();
    }
    QString title() const
    {
        return m_scene->events.titles.value(m_scene->events.titles.size() - 1);
    }

    std::unique_ptr<TestServer> serverOf(const Shape &shape)
    {
        return std::make_unique<TestServer>(TestCertificates::shaped(m_folder.path(), shape));
    }
    CertificateNotice *notice() const
    {
        const auto all = m_scene->browser->widget()->findChildren<CertificateNotice *>();
        for (CertificateNotice *each : all) {
            if (each->isVisible())
                return each;
        }
        return nullptr;
    }
    QString text(const QString &name) const
    {
        const auto *label = notice() ? notice()->findChild<QLabel *>(name) : nullptr;
        return label ? label->text() : QString();
    }
    QPushButton *button(const QString &name) const
    {
        return notice() ? notice()->findChild<QPushButton *>(name) : nullptr;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<ControlScene> m_scene;
};

void tst_certificates::initTestCase()
{
    const QString wrong = TestCertificates::make(m_folder.path(), QDir::homePath());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_certificates::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_scene->server.page("/a", "<title>Page A</title>a");
}

void tst_certificates::cleanup()
{
    m_scene.reset();
    CertificateExceptions::instance().clear();
}

void tst_certificates::reasons_data()
{
    QTest::addColumn<Shape>("shape");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const Shape &shape, const QString &reason) {
        QTest::newRow(name) << shape << reason;
    };
    row("unknown issuer", {.signer = Signer::Stranger},
        u"Its certificate was issued by Stranger, which is not known here."_s);
    row("self-signed", {.signer = Signer::Itself},
        u"Its certificate names itself as its issuer: nobody known here says whose it is."_s);
    row("expired", {.from = -2, .until = -1}, u"Its certificate expired on"_s);
    row("not yet valid", {.from = 1, .until = 2}, u"Its certificate is not valid before"_s);
    row("other name", {.names = {u"DNS:other.test"_s}},
        u"Its certificate is for another site: other.test"_s);
    row("weak key", {.bits = 768}, u"Its certificate is too weakly protected (RSA, 768 bits"_s);
    row("weak signature", {.digest = u"sha1"_s}, u"Its certificate is too weakly protected"_s);
    row("unknown and expired", {.signer = Signer::Stranger, .from = -2, .until = -1},
        u"expired on"_s);
}

void tst_certificates::reasons()
{
    QFETCH(Shape, shape);
    QFETCH(QString, reason);
    const auto server = serverOf(shape);
    server->page("/a", "<title>Never</title>");
    m_scene->browser->navigate(server->url(u"/a"_s, u"localhost"_s));
    QTRY_VERIFY(notice());
    QVERIFY2(text(u"lblReason"_s).contains(reason), qPrintable(text(u"lblReason"_s)));
    QCOMPARE(notice()->accessibleName(),
             u"https://localhost:%1 could not prove who it is"_s.arg(server->port()));
    QVERIFY(button(u"cmdGoOn"_s));
    QVERIFY(!m_scene->events.secure);
    QCOMPARE(server->count("/a"), 0);
}

void tst_certificates::addressIsTheFailedOne()
{
    const auto good = std::make_unique<TestServer>(TestCertificates::server(m_folder.path()));
    good->page("/a", "<title>Good</title>");
    m_scene->open(good->url(u"/a"_s));
    QVERIFY(m_scene->events.secure);
    const auto bad = serverOf({.signer = Signer::Stranger});
    openBad(*bad, u"/x?y"_s);
    QCOMPARE(m_scene->browser->locationUrl(), bad->url(u"/x?y"_s, u"localhost"_s));
    QVERIFY(!m_scene->events.secure);
    QVERIFY(!m_scene->events.unproven);
    QTRY_VERIFY(!m_scene->browser->isBusy());
}

void tst_certificates::backGoesBack()
{
    m_scene->open(m_scene->server.url(u"/a"_s));
    const auto bad = serverOf({.signer = Signer::Stranger});
    openBad(*bad);
    button(u"cmdBack"_s)->click();
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
    QTRY_VERIFY(!notice());
    QTRY_COMPARE(title(), u"Page A"_s);
}

void tst_certificates::backWithoutHistory()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    openBad(*bad);
    button(u"cmdBack"_s)->click();
    QTRY_COMPARE(m_scene->browser->locationUrl(), u"about:blank"_s);
    QTRY_VERIFY(!notice());
}

void tst_certificates::keysGoBack_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("Return presses the default") << Qt::Key_Return;
}

void tst_certificates::keysGoBack()
{
    QFETCH(Qt::Key, key);
    m_scene->open(m_scene->server.url(u"/a"_s));
    const auto bad = serverOf({.signer = Signer::Stranger});
    m_scene->browser->setFocus();
    openBad(*bad);
    QTRY_VERIFY(button(u"cmdBack"_s)->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), key);
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
    QTRY_VERIFY(!notice());
}

/// A click meant for what was there before, or made by a page that jumps there and back, is none.
void tst_certificates::goOnTakesTime()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    openBad(*bad);
    QVERIFY(!button(u"cmdGoOn"_s)->isEnabled());
    button(u"cmdGoOn"_s)->click();
    QVERIFY(CertificateExceptions::instance().isEmpty());
    QTRY_VERIFY(button(u"cmdGoOn"_s)->isEnabled());
    button(u"cmdGoOn"_s)->setFocus();
    m_scene->window.resize(500, 300);
    m_scene->browser->widget()->resize(500, 300);
    QTRY_VERIFY(!button(u"cmdGoOn"_s)->isEnabled() && !button(u"cmdGoOn"_s)->hasFocus());
    QTRY_VERIFY(button(u"cmdGoOn"_s)->isEnabled());
    m_scene->browser->refresh();
    const QPointer<CertificateNotice> before = notice();
    QTRY_VERIFY(!before && notice());
    QVERIFY(!button(u"cmdGoOn"_s)->isEnabled());
}

void tst_certificates::goOnOpensThePage()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    openBad(*bad);
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    QTRY_VERIFY(!notice());
    QCOMPARE(m_scene->browser->locationUrl(), bad->url(u"/a"_s, u"localhost"_s));
    QVERIFY(!m_scene->events.secure);
    QVERIFY(m_scene->events.unproven);
    QVERIFY(m_scene->browser->widget()->findChild<QWebEngineView *>()->isVisible());
    m_scene->open(m_scene->server.url(u"/a"_s));
    QVERIFY(!m_scene->events.unproven);
}

void tst_certificates::goOnHoldsForTheProgram()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    bad->page("/b", "<title>Other</title>");
    openBad(*bad);
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    m_scene->open(bad->url(u"/b"_s, u"localhost"_s));
    QTRY_COMPARE(title(), u"Other"_s);
    QVERIFY(!notice());
    QVERIFY(m_scene->events.unproven);
    m_scene->browser->refresh();
    QTRY_COMPARE(bad->count("/b"), 2);
    QTRY_VERIFY(!m_scene->browser->isBusy());
    QVERIFY(!notice());
    QVERIFY(m_scene->events.unproven && !m_scene->events.secure);
}

void tst_certificates::goOnIsForThatCertificateAlone()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    openBad(*bad);
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    bad->setCertificate(TestCertificates::shaped(m_folder.path(), {.signer = Signer::Stranger}));
    m_scene->browser->refresh();
    QTRY_VERIFY(notice());
    QCOMPARE(bad->count("/a"), 1);
    goOn();
    QTRY_COMPARE(bad->count("/a"), 2);
    QTRY_VERIFY(!notice());
}

void tst_certificates::goOnIsForThatFlawAlone()
{
    const auto bad = serverOf({.names = {u"DNS:one.test"_s}});
    bad->page("/a", "<title>Secret</title>");
    openBad(*bad);
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    bad->setCertificate(TestCertificates::shaped(m_folder.path(), {.from = -2, .until = -1}));
    m_scene->browser->refresh();
    QTRY_VERIFY(notice());
    QVERIFY(text(u"lblReason"_s).contains("expired"_L1));
}

/// It never left: nothing was sent to a server that could not prove who it is.
void tst_certificates::goOnSendsTheForm()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/send", "<title>Sent</title>");
    m_scene->server.page("/form",
                         "<title>form</title><form method=post action='"
                             + bad->url(u"/send"_s, u"localhost"_s).toUtf8()
                             + "'><input name=a value=one></form>");
    m_scene->open(m_scene->server.url(u"/form"_s));
    m_scene->script(u"document.forms[0].submit(); 1"_s);
    QTRY_VERIFY(notice());
    QCOMPARE(bad->count("/send"), 0);
    goOn();
    QTRY_COMPARE(title(), u"Sent"_s);
    QCOMPARE(bad->count("/send"), 1);
    QCOMPARE(bad->requests("/send").first().method, "POST");
    QCOMPARE(bad->requests("/send").first().body, "a=one");
}

void tst_certificates::redirectToBadHost()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    m_scene->server.redirect("/to", bad->url(u"/a"_s, u"localhost"_s).toUtf8());
    m_scene->browser->navigate(m_scene->server.url(u"/to"_s));
    QTRY_VERIFY(notice());
    QCOMPARE(m_scene->browser->locationUrl(), bad->url(u"/a"_s, u"localhost"_s));
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    QVERIFY(m_scene->events.unproven);
}

/// A page that is sent on and on has one notice at a time, and the last of them stands.
void tst_certificates::redirectsWithoutEnd()
{
    constexpr int most = 1000;
    const auto bad = serverOf({.signer = Signer::Stranger});
    m_scene->server.page("/opener",
                         "<title>opener</title><iframe id=f></iframe><script>let n = 0;"
                         "setInterval(() => { if (n++ < 1000) document.getElementById('f').src = '"
                             + bad->url(u"/f"_s, u"localhost"_s).toUtf8()
                             + "?' + n; else document.title = 'through'; }, 1)</script>");
    m_scene->open(m_scene->server.url(u"/opener"_s));
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"through"_s, 60000);
    QVERIFY(!notice());
    for (int i = 0; i < 20; ++i) {
        m_scene->browser->navigate(bad->url(u"/%1"_s.arg(most + i), u"localhost"_s));
    }
    QTRY_COMPARE(m_scene->browser->locationUrl(), bad->url(u"/1019"_s, u"localhost"_s));
    QTRY_VERIFY(notice());
    QTRY_COMPARE(m_scene->browser->widget()->findChildren<CertificateNotice *>().size(), 1);
    QCOMPARE(bad->requests().size(), 0);
}

void tst_certificates::partsAreRefusedInSilence()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    const auto good = std::make_unique<TestServer>(TestCertificates::server(m_folder.path()));
    const QByteArray part = bad->url(u"/x.js"_s, u"localhost"_s).toUtf8();
    good->page("/page",
               "<title>page</title><script>onload = () => document.title = 'loaded'</script>"
               "<script src='"
                   + part + "'></script><img src='" + part
                   + "'>"
                     "<link rel=stylesheet href='"
                   + part + "'>");
    m_scene->browser->navigate(good->url(u"/page"_s));
    QTRY_COMPARE(title(), u"loaded"_s);
    QVERIFY(!notice());
    QCOMPARE(bad->requests().size(), 0);
    QVERIFY(m_scene->events.secure);
}

void tst_certificates::framesAreRefusedInSilence()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    const QByteArray frame = bad->url(u"/x"_s, u"localhost"_s).toUtf8();
    QByteArray frames;
    for (int i = 0; i < 50; ++i)
        frames += "<iframe src='" + frame + "?" + QByteArray::number(i) + "'></iframe>";
    m_scene->server.page("/page",
                         "<title>page</title><script>onload = () => document.title = 'loaded'"
                         "</script>"
                             + frames);
    m_scene->browser->navigate(m_scene->server.url(u"/page"_s));
    QTRY_COMPARE(title(), u"loaded"_s);
    QTRY_VERIFY(!m_scene->browser->isBusy());
    QVERIFY(!notice());
    QCOMPARE(m_scene->browser->locationUrl(), m_scene->server.url(u"/page"_s));
    QCOMPARE(bad->requests().size(), 0);
}

void tst_certificates::unprovenPartTakesTheLock()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    openBad(*bad);
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    const auto good = std::make_unique<TestServer>(TestCertificates::server(m_folder.path()));
    good->redirect("/part.svg", bad->url(u"/part.svg"_s, u"localhost"_s).toUtf8());
    good->page("/page", "<title>page</title><body>");
    const QString page = good->url(u"/page"_s);
    m_scene->open(page);
    QTRY_VERIFY(m_scene->events.secure);
    m_scene->script(u"new Image().src = '/part.svg'; 1"_s);
    QTRY_VERIFY(!m_scene->events.secure);
    QVERIFY(m_scene->events.unproven);
    QTRY_COMPARE(bad->count("/part.svg"), 1);
}

void tst_certificates::unprovenPartIsForgottenWithItsPage()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    openBad(*bad);
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    const auto good = std::make_unique<TestServer>(TestCertificates::server(m_folder.path()));
    good->page("/page",
               "<title>page</title><img src='" + bad->url(u"/p.svg"_s, u"localhost"_s).toUtf8()
                   + "'>");
    good->page("/clean", "<title>clean</title>");
    m_scene->open(good->url(u"/page"_s));
    QTRY_VERIFY(m_scene->events.unproven);
    m_scene->open(good->url(u"/clean"_s));
    QTRY_COMPARE(title(), u"clean"_s);
    QTRY_VERIFY(m_scene->events.secure);
    QVERIFY(!m_scene->events.unproven);
}

/// It was asked for before the user let its server pass elsewhere.
void tst_certificates::partThatIsAnsweredLateTakesTheLock()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    bad->page("/part.js", "document.title = 'run'");
    Gate gate(bad->port());
    const QString site = u"https://localhost:%1"_s.arg(gate.serverPort());
    const auto good = std::make_unique<TestServer>(TestCertificates::server(m_folder.path()));
    good->page("/page",
               "<title>page</title><script async src='" + site.toUtf8() + "/part.js'></script>");
    ControlScene other;
    other.browser->navigate(good->url(u"/page"_s));
    QTRY_VERIFY(other.events.secure);
    QTRY_VERIFY(gate.waiting() > 0);
    gate.open();
    m_scene->browser->navigate(site + "/a"_L1);
    QTRY_VERIFY(notice());
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    gate.release();
    QTRY_COMPARE(other.events.titles.last(), u"run"_s);
    QVERIFY(!other.events.secure);
    QVERIFY(other.events.unproven);
}

/// Once it has said over a proven connection that it wants no other.
void tst_certificates::strictSiteOffersNoWay()
{
    const auto good = serverOf({.names = {u"DNS:strict.test"_s}});
    TestServer::Reply strict;
    strict.body = "<title>strict</title>";
    strict.headers = {{"Strict-Transport-Security", "max-age=1000"}};
    good->reply("/a", strict);
    m_scene->open(good->url(u"/a"_s, u"strict.test"_s));
    QTRY_COMPARE(title(), u"strict"_s);
    const auto bad = serverOf({.signer = Signer::Stranger, .names = {u"DNS:strict.test"_s}});
    m_scene->browser->navigate(bad->url(u"/a"_s, u"strict.test"_s));
    QTRY_VERIFY(notice());
    QVERIFY(!button(u"cmdGoOn"_s));
    QVERIFY(text(u"lblNoWay"_s).startsWith("This site has asked"_L1));
    QVERIFY(button(u"cmdBack"_s) && button(u"cmdDetails"_s));
}

void tst_certificates::goOnAfterAnotherPageCame()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    openBad(*bad);
    const QPointer<QPushButton> late = button(u"cmdGoOn"_s);
    m_scene->open(m_scene->server.url(u"/a"_s));
    if (late)
        late->click();
    QTRY_COMPARE(title(), u"Page A"_s);
    QVERIFY(!notice());
    QCOMPARE(m_scene->browser->locationUrl(), m_scene->server.url(u"/a"_s));
    QCOMPARE(bad->requests().size(), 0);
}

/// The engine asks nobody about it.
void tst_certificates::unreadableCertificateOffersNoWay()
{
    QSslConfiguration shape = TestCertificates::shaped(m_folder.path(), {.signer = Signer::Itself});
    QByteArray bytes = shape.localCertificate().toDer();
    // The second of two dates, in hundreds of years that are none.
    const QByteArray date("\x17\x0d");
    const qsizetype until = bytes.indexOf(date, bytes.indexOf(date) + date.size());
    QVERIFY(until > 0);
    bytes.replace(until + date.size(), 2, "xx");
    shape.setLocalCertificate(QSslCertificate(bytes, QSsl::Der));
    const TestServer bad(shape);
    m_scene->open(m_scene->server.url(u"/a"_s));
    openBad(bad);
    QCOMPARE(text(u"lblReason"_s), u"Its certificate has errors."_s);
    QCOMPARE(text(u"lblNoWay"_s), u"With this fault you cannot go on."_s);
    QVERIFY(!button(u"cmdGoOn"_s));
    QVERIFY(!button(u"cmdDetails"_s)->isEnabled());
    QVERIFY(!m_scene->events.secure);
    button(u"cmdBack"_s)->click();
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
    QTRY_VERIFY(!notice());
}

void tst_certificates::anotherErrorIsNoFailure()
{
    QString address;
    {
        const auto bad = serverOf({.signer = Signer::Stranger});
        openBad(*bad);
        address = bad->url(u"/a"_s, u"localhost"_s);
    }
    // Now nobody listens there.
    m_scene->browser->refresh();
    QTRY_VERIFY(!notice());
    QTRY_COMPARE(m_scene->script(u"document.querySelector('h1').textContent"_s),
                 u"This page cannot be shown"_s);
    QCOMPARE(m_scene->browser->locationUrl(), address);
    QVERIFY(!notice());
}

void tst_certificates::stepsThroughTheHistory()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    bad->page("/a", "<title>Secret</title>");
    m_scene->open(m_scene->server.url(u"/a"_s));
    openBad(*bad);
    QVERIFY(m_scene->browser->goBack());
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
    QVERIFY(m_scene->browser->goForward());
    QTRY_VERIFY(notice());
    goOn();
    QTRY_COMPARE(title(), u"Secret"_s);
    QVERIFY(m_scene->browser->goBack());
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
    QVERIFY(!m_scene->events.unproven);
    QVERIFY(m_scene->browser->goForward());
    m_scene->waitFor(bad->url(u"/a"_s, u"localhost"_s));
    QVERIFY(!notice());
    QVERIFY(m_scene->events.unproven);
}

/// It is asked for as a page is, and comes once the user goes on.
void tst_certificates::downloadIsRefused()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    TestServer::Reply file;
    file.type = "application/octet-stream";
    file.headers = {{"Content-Disposition", "attachment; filename=file.bin"}};
    file.body = "bytes";
    bad->reply("/file.bin", file);
    m_scene->open(m_scene->server.url(u"/a"_s));
    openBad(*bad, u"/file.bin"_s);
    QCOMPARE(bad->requests().size(), 0);
    goOn();
    QTRY_COMPARE(bad->count("/file.bin"), 1);
    QTRY_VERIFY(!m_scene->browser->isBusy());
    QVERIFY(notice());
    button(u"cmdBack"_s)->click();
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
    QTRY_VERIFY(!notice());
}

void tst_certificates::crashBehindTheNotice()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    openBad(*bad);
    emit m_scene->browser->page()->renderProcessTerminated(QWebEnginePage::CrashedTerminationStatus,
                                                           0);
    QTRY_VERIFY(m_scene->browser->widget()->findChild<CrashNotice *>());
    QVERIFY(!notice());
    m_scene->open(m_scene->server.url(u"/a"_s));
    QTRY_COMPARE(title(), u"Page A"_s);
    QVERIFY(m_scene->browser->widget()->findChild<QWebEngineView *>()->isVisible());
}

void tst_certificates::controlEndsWithTheNotice()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    openBad(*bad);
    button(u"cmdDetails"_s)->click();
    QTRY_VERIFY(notice()->findChild<CertificateDetails *>());
    m_scene->browser->dropPage();
    QVERIFY(!notice());
    m_scene.reset();
    m_scene = std::make_unique<ControlScene>();
    m_scene->server.page("/a", "<title>Page A</title>a");
    m_scene->open(m_scene->server.url(u"/a"_s));
}

void tst_certificates::detailsShowTheChain()
{
    const auto bad = serverOf({.signer = Signer::Stranger});
    openBad(*bad);
    button(u"cmdDetails"_s)->click();
    CertificateDetails *details = nullptr;
    QTRY_VERIFY((details = notice()->findChild<CertificateDetails *>()));
    const auto *list = details->findChild<QListWidget *>(u"lstChain"_s);
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), u"localhost"_s);
    QCOMPARE(list->item(1)->text(), u"Stranger"_s);
    details->close();
    QVERIFY(notice());
}

/// It may send without end to whoever stays.
void tst_certificates::askedServerIsLeft()
{
    const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
    const auto reset = qScopeGuard([&] { QSslConfiguration::setDefaultConfiguration(before); });
    QSslConfiguration trusting = before;
    QVERIFY(trusting.addCaCertificates(m_folder.filePath(u"ca.pem"_s)));
    QSslConfiguration::setDefaultConfiguration(trusting);
    TestServer server(TestCertificates::server(m_folder.path()));
    ConnectionCheck check;
    const QSignalSpy answered(&check, &ConnectionCheck::answered);
    check.ask(QUrl(server.url(u"/"_s, u"localhost"_s)));
    QVERIFY(check.findChild<QSslSocket *>());
    QTRY_COMPARE(answered.size(), 1);
    QVERIFY(!check.chain().isEmpty() && check.problems().isEmpty());
    QTRY_VERIFY(!check.findChild<QSslSocket *>());
}

int main(int argc, char **argv)
{
    const QTemporaryDir folder;
    TestCertificates::allowWeakServers(folder.path());
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--host-resolver-rules=\"MAP *.test 127.0.0.1\"");
    return runEngineTest<tst_certificates>(argc, argv);
}
#include "tst_certificates.moc"
