#include <QAuthenticator>
#include <QCryptographicHash>
#include <QLineEdit>
#include <QMdiArea>
#include <QNetworkProxy>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include "CertificateExceptions.h"
#include "EngineTest.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "PopupScene.h"
#include "TestCertificates.h"

using namespace Qt::StringLiterals;

/// Servers and proxies that want a user name and a password.
class tst_signin : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void pageIsAskedFor();
    void wrongPasswordIsAskedAgain();
    void answersComeBeforeTheRefusals_data();
    void answersComeBeforeTheRefusals();
    void digestIsAnswered();
    void realmsOfAHostAreAskedForOneByOne();
    void portsAreServersOfTheirOwn();
    void passwordGoesOnceHoweverOftenThePageReloads();
    void answerBeforeThePageHasCome();
    void redirectedPageNamesItsServer();
    void cancelShowsTheAnswerAndHolds();
    void partsOfAPageAreNotAskedFor();
    void scriptsAreNotAskedFor();
    void partsGetWhatIsKnown();
    void reloadingPageKeepsOneQuestion();
    void pagesThatGoOnAskingAreShutUp();
    void anotherRealmTakesTheQuestionsPlace();
    void pageOfEverNewRealmsIsShutUp();
    void questionGoesWithItsPage();
    void formIsNotSentAgainUnasked();
    void signingInServesAllWindows();
    void connectionIsNamed_data();
    void connectionIsNamed();
    void proxyIsNamed();
    void unprovenSiteIsSaidToBe();
    void loginOfAProvenSiteStaysThere();

private:
    /// As if the user had gone on there.
    static void pass(const QString &url, const QList<QSslCertificate> &chain)
    {
        CertificateExceptions::instance().add(
            {QUrl(url), CertificateProblem::UnknownIssuer, true, chain});
    }
    /// A page behind user "me" and that password, with a realm of its own.
    void protect(const QByteArray &path, const QByteArray &realm, const QByteArray &refusal = {},
                 const QByteArray &password = "secret")
    {
        protect(m_scene->server, path, realm, refusal, password);
    }
    static void protect(TestServer &server, const QByteArray &path, const QByteArray &realm,
                        const QByteArray &refusal = {}, const QByteArray &password = "secret");
    static void enter(const PageQuestionBox *box, const QString &password);
    PageQuestionBox *question() const { return PageAsks::shownIn(m_form); }
    QString url(const QString &path) const { return m_scene->server.url(path); }
    void open(const QString &path) { m_form = m_scene->frame.open(url(path), true); }
    QString title() const { return m_form->windowTitle(); }
    /// Requests for `path` with that password, so far.
    int countWith(const QByteArray &path, const QByteArray &password) const;

    QTemporaryDir m_certificates;
    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

namespace {
QByteArray basic(const QByteArray &password)
{
    return "Basic " + ("me:" + password).toBase64();
}

int number = 0;

const QString unencrypted =
    u"The connection is not encrypted: others on the way may read the password."_s;

QByteArray md5(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

/// One of the values of a header with several.
QByteArray valueOf(const QByteArray &header, const QByteArray &name)
{
    const QRegularExpression form(u"[ ,]%1=\"?([^\",]*)"_s.arg(QString::fromLatin1(name)));
    return form.match(QString::fromLatin1(header)).captured(1).toLatin1();
}

/// As RFC 7616 has it, for user "me".
bool isDigestOf(const QByteArray &password, const TestServer::Request &request)
{
    const QByteArray header = request.headers.value("authorization");
    const auto value = [&header](const char *name) { return valueOf(header, name); };
    const QByteArray who = md5("me:" + value("realm") + ':' + password);
    const QByteArray what = md5(request.method + ':' + value("uri"));
    return header.startsWith("Digest ") && value("username") == "me"
        && value("response")
        == md5(who + ':' + value("nonce") + ':' + value("nc") + ':' + value("cnonce") + ':'
               + value("qop") + ':' + what);
}
}

void tst_signin::initTestCase()
{
    const QString wrong = TestCertificates::make(m_certificates.path(), QDir::homePath());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_signin::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    // What was entered is kept for the life of the program.
    ++number;
}

void tst_signin::cleanup()
{
    m_scene.reset();
    CertificateExceptions::instance().clear();
}

void tst_signin::protect(TestServer &server, const QByteArray &path, const QByteArray &realm,
                         const QByteArray &refusal, const QByteArray &password)
{
    const QByteArray name = realm + QByteArray::number(number);
    server.handle(path, [=](const TestServer::Request &request) {
        TestServer::Reply reply;
        const bool known = request.headers.value("authorization") == basic(password);
        reply.status = known ? 200 : 401;
        reply.body = known ? "<title>Inside</title>" : "<title>Outside</title>" + refusal;
        if (!known)
            reply.headers = {{"WWW-Authenticate", "Basic realm=\"" + name + "\""}};
        return reply;
    });
}

void tst_signin::enter(const PageQuestionBox *box, const QString &password)
{
    box->findChild<QLineEdit *>(u"txtUser"_s)->setText(u"me"_s);
    box->findChild<QLineEdit *>(u"txtPassword"_s)->setText(password);
    PageAsks::press(PageAsks::yes(box));
}

int tst_signin::countWith(const QByteArray &path, const QByteArray &password) const
{
    int count = 0;
    for (const TestServer::Request &each : m_scene->server.requests(path))
        count += each.headers.value("authorization") == basic(password) ? 1 : 0;
    return count;
}

void tst_signin::pageIsAskedFor()
{
    protect("/private", "Realm");
    open(u"/private"_s);
    QTRY_VERIFY(question());
    QTRY_COMPARE(title(), u"Outside"_s);
    QVERIFY(!QApplication::activeModalWidget());
    const PageQuestionBox *box = question();
    const auto *password = box->findChild<QLineEdit *>(u"txtPassword"_s);
    QCOMPARE(password->echoMode(), QLineEdit::Password);
    QCOMPARE(password->accessibleName(), u"Password"_s);
    QCOMPARE(box->findChild<QLineEdit *>(u"txtUser"_s)->accessibleName(), u"User name"_s);
    QVERIFY(PageAsks::textOf(box).contains("Realm"_L1));
    enter(box, u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    QTRY_VERIFY(!question());
}

void tst_signin::wrongPasswordIsAskedAgain()
{
    protect("/private", "Realm");
    open(u"/private"_s);
    QTRY_VERIFY(question());
    // As a person does, who sees the page first.
    QTRY_VERIFY(!m_form->browser()->isBusy());
    const QPointer<PageQuestionBox> first = question();
    enter(first, u"wrong"_s);
    QTRY_VERIFY(question() && question() != first);
    QVERIFY(PageAsks::textOf(question()).contains("not accepted"_L1));
    QCOMPARE(question()->findChild<QLineEdit *>(u"txtUser"_s)->text(), u"me"_s);
    enter(question(), u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    QCOMPARE(countWith("/private", "wrong"), 1);
}

void tst_signin::answersComeBeforeTheRefusals_data()
{
    QTest::addColumn<bool>("hasBody");
    QTest::addColumn<QByteArray>("refusal");
    QTest::newRow("short") << true << QByteArray();
    QTest::newRow("with a part that never comes") << true << QByteArray("<img src=/held>");
    QTest::newRow("that never comes") << false << QByteArray();
}

/// Nobody has to wait for what the server says beside asking.
void tst_signin::answersComeBeforeTheRefusals()
{
    QFETCH(bool, hasBody);
    QFETCH(QByteArray, refusal);
    m_scene->server.hold("/held");
    m_scene->server.handle("/private", [=](const TestServer::Request &request) {
        TestServer::Reply reply;
        if (request.headers.value("authorization") == basic("secret")) {
            reply.body = "<title>Inside</title>";
            return reply;
        }
        reply.status = 401;
        reply.headers = {
            {"WWW-Authenticate", "Basic realm=\"Realm" + QByteArray::number(number) + '"'}};
        reply.body = "<title>Outside</title>" + refusal;
        reply.stallAfterHeaders = !hasBody;
        return reply;
    });
    QStringList passwords{u"one"_s, u"two"_s, u"three"_s, u"secret"_s};
    open(u"/private"_s);
    const WhenAsked asked(
        m_form, [&passwords](PageQuestionBox *box) { enter(box, passwords.takeFirst()); });
    QTRY_COMPARE(title(), u"Inside"_s);
    QCOMPARE(asked.count(), 4);
    for (const char *wrong : {"one", "two", "three"})
        QCOMPARE(countWith("/private", wrong), 1);
}

void tst_signin::digestIsAnswered()
{
    m_scene->server.handle("/private", [](const TestServer::Request &request) {
        TestServer::Reply reply;
        const bool known = isDigestOf("secret", request);
        reply.status = known ? 200 : 401;
        reply.body = known ? "<title>Inside</title>" : "<title>Outside</title>";
        if (!known)
            reply.headers = {{"WWW-Authenticate",
                              "Digest realm=\"Digest" + QByteArray::number(number)
                                  + "\", nonce=\"abc\", qop=\"auth\", algorithm=MD5"}};
        return reply;
    });
    open(u"/private"_s);
    QTRY_COMPARE(title(), u"Outside"_s);
    QTRY_VERIFY(question());
    QVERIFY(PageAsks::textOf(question()).contains(unencrypted));
    const QPointer<PageQuestionBox> first = question();
    enter(first, u"wrong"_s);
    QTRY_VERIFY(question() && question() != first);
    QVERIFY(PageAsks::textOf(question()).contains("not accepted"_L1));
    enter(question(), u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    for (const TestServer::Request &each : m_scene->server.requests("/private"))
        QVERIFY(!each.headers.value("authorization").contains("secret"));
}

void tst_signin::realmsOfAHostAreAskedForOneByOne()
{
    protect("/one/page", "One", {}, "first");
    protect("/two/page", "Two", {}, "second");
    open(u"/one/page"_s);
    QTRY_VERIFY(question());
    enter(question(), u"first"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    m_form->browser()->navigate(url(u"/two/page"_s));
    QTRY_VERIFY(question());
    QVERIFY(PageAsks::textOf(question()).contains("Two"_L1));
    QVERIFY(!PageAsks::textOf(question()).contains("not accepted"_L1));
    QCOMPARE(question()->findChild<QLineEdit *>(u"txtUser"_s)->text(), QString());
    QCOMPARE(question()->findChild<QLineEdit *>(u"txtPassword"_s)->text(), QString());
    QTRY_COMPARE(title(), u"Outside"_s);
    enter(question(), u"second"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    m_form->browser()->navigate(url(u"/one/page"_s));
    QTRY_COMPARE(m_form->browser()->locationUrl(), url(u"/one/page"_s));
    QTRY_COMPARE(title(), u"Inside"_s);
    QVERIFY(!question());
    QCOMPARE(countWith("/one/page", "second"), 0);
    QCOMPARE(countWith("/two/page", "first"), 0);
}

void tst_signin::portsAreServersOfTheirOwn()
{
    protect("/private", "Realm");
    TestServer other;
    other.handle("/private", [](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.status = 401;
        reply.headers = {
            {"WWW-Authenticate", "Basic realm=\"Realm" + QByteArray::number(number) + '"'}};
        return reply;
    });
    open(u"/private"_s);
    QTRY_VERIFY(question());
    enter(question(), u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    m_form->browser()->navigate(other.url(u"/private"_s));
    QTRY_VERIFY(question());
    QCOMPARE(PageAsks::askerOf(question()), u"http://127.0.0.1:%1"_s.arg(other.port()));
    for (const TestServer::Request &each : other.requests())
        QVERIFY(!each.headers.contains("authorization"));
}

/// A page that reloads itself all the time does not try a wrong one all the time.
void tst_signin::passwordGoesOnceHoweverOftenThePageReloads()
{
    protect("/private", "Realm", "<script>setTimeout(() => location.reload(), 20)</script>");
    open(u"/private"_s);
    QTRY_VERIFY(question());
    enter(question(), u"wrong"_s);
    QTRY_VERIFY(question() && PageAsks::textOf(question()).contains("not accepted"_L1));
    const int before = m_scene->server.count("/private");
    QTRY_VERIFY(m_scene->server.count("/private") > before + 20);
    QVERIFY(countWith("/private", "wrong") < 4);
}

void tst_signin::answerBeforeThePageHasCome()
{
    protect("/private", "Realm");
    open(u"/private"_s);
    const WhenAsked asked(m_form, [](PageQuestionBox *box) { enter(box, u"secret"_s); });
    QTRY_COMPARE(title(), u"Inside"_s);
    QCOMPARE(asked.count(), 1);
}

void tst_signin::redirectedPageNamesItsServer()
{
    TestServer other;
    other.handle("/private", [](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.status = 401;
        reply.headers = {{"WWW-Authenticate", "Basic realm=\"There\""}};
        return reply;
    });
    m_scene->server.redirect("/go", other.url(u"/private"_s, u"localhost"_s).toUtf8());
    open(u"/go"_s);
    QTRY_VERIFY(question());
    QCOMPARE(PageAsks::askerOf(question()), u"http://localhost:%1"_s.arg(other.port()));
}

void tst_signin::cancelShowsTheAnswerAndHolds()
{
    protect("/private", "Realm", "<script>setTimeout(() => location.reload(), 20)</script>");
    open(u"/private"_s);
    QTRY_VERIFY(question());
    PageAsks::press(PageAsks::no(question()));
    const int before = m_scene->server.count("/private");
    QTRY_VERIFY(m_scene->server.count("/private") > before + 5);
    QVERIFY(!question());
    QCOMPARE(title(), u"Outside"_s);
    m_form->browser()->navigate(url(u"/private"_s));
    QTRY_VERIFY(question());
}

void tst_signin::partsOfAPageAreNotAskedFor()
{
    QByteArray parts;
    for (int i = 0; i < 10; ++i) {
        const QByteArray path = "/part" + QByteArray::number(i);
        protect(path, "Part" + QByteArray::number(i));
        parts += "<img src=" + path + "><iframe src=" + path + "?frame></iframe>";
    }
    m_scene->server.page("/page", "<title>page</title>" + parts);
    open(u"/page"_s);
    PopupScene::waitUntilLoaded(m_form);
    for (int i = 0; i < 10; ++i)
        QTRY_COMPARE(m_scene->server.count("/part" + QByteArray::number(i)), 2);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_signin::scriptsAreNotAskedFor()
{
    protect("/private", "Realm");
    m_scene->server.page("/page",
                         "<title>page</title><script>let n = 0; (async () => { while (n < 30) {"
                         "const r = await fetch('/private?' + n++); document.title = "
                         "n + ' ' + r.status; } })()</script>");
    open(u"/page"_s);
    QTRY_COMPARE(title(), u"30 401"_s);
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_signin::partsGetWhatIsKnown()
{
    protect("/dir/page", "Realm");
    for (int i = 0; i < 4; ++i)
        protect("/other/" + QByteArray::number(i), "Realm");
    open(u"/dir/page"_s);
    QTRY_VERIFY(question());
    enter(question(), u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    PopupScene::script(m_form, u"for (let i = 0; i < 4; i++) new Image().src = '/other/' + i; 1"_s);
    for (int i = 0; i < 4; ++i)
        QTRY_COMPARE(countWith("/other/" + QByteArray::number(i), "secret"), 1);
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_signin::reloadingPageKeepsOneQuestion()
{
    protect("/private", "Realm", "<script>setTimeout(() => location.reload(), 20)</script>");
    open(u"/private"_s);
    QTRY_VERIFY(question());
    const QPointer<PageQuestionBox> first = question();
    first->findChild<QLineEdit *>(u"txtUser"_s)->setText(u"me"_s);
    const int before = m_scene->server.count("/private");
    QTRY_VERIFY(m_scene->server.count("/private") > before + 5);
    QVERIFY(first && first->isVisible());
    QCOMPARE(PageAsks::countIn(m_form), 1);
    enter(first, u"secret"_s);
    // A load that the page itself has ended by then may have taken it along.
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"Inside"_s, 20000);
    QTRY_VERIFY(!question());
}

/// One realm after the other, by itself.
void tst_signin::pagesThatGoOnAskingAreShutUp()
{
    for (int i = 0; i < 20; ++i) {
        const QByteArray next = QByteArray::number((i + 1) % 20);
        protect("/r" + QByteArray::number(i), "Realm" + QByteArray::number(i),
                "<script>setTimeout(() => location = '/r" + next + "', 20)</script>");
    }
    open(u"/r0"_s);
    QTRY_VERIFY(question());
    QTRY_VERIFY(m_scene->server.count("/r12") > 0);
    QTRY_VERIFY(!question());
    const int before = m_scene->server.count("/r19");
    QTRY_VERIFY(m_scene->server.count("/r19") > before);
    QVERIFY(!question());
}

void tst_signin::anotherRealmTakesTheQuestionsPlace()
{
    protect("/r", "First");
    open(u"/r"_s);
    QTRY_VERIFY(question());
    PopupScene::waitUntilLoaded(m_form);
    protect("/r", "Second");
    m_form->browser()->refresh();
    QTRY_VERIFY(question() && PageAsks::textOf(question()).contains("Second"_L1));
    QCOMPARE(PageAsks::countIn(m_form), 1);
    enter(question(), u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    QVERIFY(!question());
}

void tst_signin::pageOfEverNewRealmsIsShutUp()
{
    int loads = 0;
    m_scene->server.handle("/r", [&loads](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.status = 401;
        const QByteArray realm = QByteArray::number(number) + "New" + QByteArray::number(++loads);
        reply.headers = {{"WWW-Authenticate", "Basic realm=\"" + realm + "\""}};
        reply.body =
            "<title>Outside</title><script>setTimeout(() => location.reload(), 20)</script>";
        return reply;
    });
    open(u"/r"_s);
    QTRY_VERIFY(question());
    QTRY_VERIFY(loads > 20);
    QTRY_VERIFY(!question());
    const int before = loads;
    QTRY_VERIFY(loads > before + 5);
    QVERIFY(!question());
}

void tst_signin::questionGoesWithItsPage()
{
    protect("/private", "Realm");
    m_scene->server.page("/b", "<title>b</title>");
    open(u"/private"_s);
    QTRY_VERIFY(question());
    QTRY_COMPARE(title(), u"Outside"_s);
    m_form->browser()->navigate(url(u"/b"_s));
    QTRY_COMPARE(title(), u"b"_s);
    QVERIFY(!question());
    m_form->browser()->navigate(url(u"/private"_s));
    QTRY_VERIFY(question());
    m_form->unload();
    QTRY_VERIFY(!m_form);
}

void tst_signin::formIsNotSentAgainUnasked()
{
    protect("/send", "Realm");
    m_scene->server.page("/form",
                         "<title>form</title><form method=post action=/send>"
                         "<input name=a value=1></form>");
    open(u"/form"_s);
    QTRY_COMPARE(title(), u"form"_s);
    PopupScene::script(m_form, u"document.forms[0].submit(); 1"_s);
    QTRY_COMPARE(title(), u"Outside"_s);
    QTRY_VERIFY(question());
    enter(question(), u"secret"_s);
    QTRY_VERIFY(question() && PageAsks::textOf(question()).startsWith("What you entered"_L1));
    QCOMPARE(m_scene->server.count("/send"), 1);
    PageAsks::press(PageAsks::yes(question()));
    QTRY_COMPARE(title(), u"Inside"_s);
    QCOMPARE(m_scene->server.requests("/send").last().method, "POST");
}

void tst_signin::signingInServesAllWindows()
{
    protect("/private", "Realm");
    open(u"/private"_s);
    QTRY_VERIFY(question());
    BrowserWindow *other = m_scene->frame.open(url(u"/private"_s));
    QTRY_VERIFY(PageAsks::shownIn(other));
    // Each in its own window, and both can be used.
    QCOMPARE(PageAsks::countIn(m_form), 1);
    QCOMPARE(PageAsks::countIn(other), 1);
    enter(PageAsks::shownIn(other), u"secret"_s);
    QTRY_COMPARE(other->windowTitle(), u"Inside"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    QTRY_VERIFY(!question() && !PageAsks::shownIn(other));
}

void tst_signin::connectionIsNamed_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("site");
    QTest::addColumn<bool>("warns");
    QTest::newRow("http") << u"http://host.test/x"_s << u"http://host.test"_s << true;
    QTest::newRow("port") << u"http://host.test:81/x"_s << u"http://host.test:81"_s << true;
    QTest::newRow("https") << u"https://host.test/x"_s << u"https://host.test"_s << false;
}

void tst_signin::connectionIsNamed()
{
    QFETCH(QString, url);
    QFETCH(QString, site);
    QFETCH(bool, warns);
    open(u"/"_s);
    WebPage *page = PopupScene::control(m_form)->page();
    page->setIsOnItsWay([&url](const QUrl &asked) { return asked == QUrl(url); });
    QAuthenticator login;
    login.setOption(u"realm"_s, u"R"_s);
    emit page->authenticationRequired(QUrl(url), &login);
    QVERIFY(login.user().isEmpty());
    QTRY_VERIFY(question());
    const QStringList lines = PageAsks::textOf(question()).split(u'\n');
    QCOMPARE(PageAsks::askerOf(question()), site);
    QCOMPARE(lines.contains(unencrypted), warns);
}

void tst_signin::proxyIsNamed()
{
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, u"proxy.test"_s, 3128});
    open(u"/"_s);
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, u"proxy.test"_s, 3128});
    WebPage *page = PopupScene::control(m_form)->page();
    const QUrl url(u"https://host.test/x"_s);
    page->setIsOnItsWay([url](const QUrl &asked) { return asked == url; });
    QAuthenticator login;
    emit page->proxyAuthenticationRequired(url, &login, u"proxy.test"_s);
    QTRY_VERIFY(question());
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QCOMPARE(PageAsks::titleOf(question()), u"The proxy asks you to sign in:"_s);
    const QStringList lines = PageAsks::textOf(question()).split(u'\n');
    QCOMPARE(lines.first(), u"proxy.test:3128"_s);
    QVERIFY(lines.contains(unencrypted));
    QVERIFY(!PageAsks::textOf(question()).contains("host.test"_L1));
}

void tst_signin::unprovenSiteIsSaidToBe()
{
    const QSslConfiguration shape = TestCertificates::shaped(
        m_certificates.path(), {.signer = TestCertificates::Signer::Stranger});
    TestServer bad(shape);
    protect(bad, "/private", "Realm");
    const QString address = bad.url(u"/private"_s, u"localhost"_s);
    pass(address, shape.localCertificateChain());
    m_form = m_scene->frame.open(address, true);
    QTRY_VERIFY(question());
    QVERIFY2(PageAsks::textOf(question()).contains("could not prove who it is"_L1),
             qPrintable(PageAsks::textOf(question())));
    enter(question(), u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
}

/// Whoever is there under its name once the user lets a certificate pass is told nothing unasked.
void tst_signin::loginOfAProvenSiteStaysThere()
{
    TestServer good(TestCertificates::server(m_certificates.path()));
    protect(good, "/private", "Realm");
    const QString address = good.url(u"/private"_s, u"localhost"_s);
    m_form = m_scene->frame.open(address, true);
    QTRY_VERIFY(question());
    QVERIFY(!PageAsks::textOf(question()).contains("could not prove"_L1));
    enter(question(), u"secret"_s);
    QTRY_COMPARE(title(), u"Inside"_s);
    const QSslConfiguration other = TestCertificates::shaped(
        m_certificates.path(), {.signer = TestCertificates::Signer::Stranger});
    pass(u"https://localhost:1/"_s, other.localCertificateChain());
    // The engine has a memory of its own, which it tries once; ours is of what is proven.
    protect(good, "/private", "Realm", {}, "other");
    const auto sent = [&good] {
        int count = 0;
        for (const TestServer::Request &each : good.requests())
            count += each.headers.contains("authorization") ? 1 : 0;
        return count;
    };
    const int before = sent();
    m_form = m_scene->frame.open(address, true);
    QTRY_VERIFY(question());
    QVERIFY(PageAsks::textOf(question()).contains("could not prove who it is"_L1));
    QVERIFY(!PageAsks::textOf(question()).contains("not accepted"_L1));
    QCOMPARE(question()->findChild<QLineEdit *>(u"txtUser"_s)->text(), QString());
    QVERIFY(sent() <= before + 1);
}

ORVANE_ENGINE_TEST_MAIN(tst_signin)
#include "tst_signin.moc"
