// A proxy that wants a user name and a password. The engine takes its proxy when it starts, so
// there is one for the whole program.
#include "EngineTest.h"
#include "PageAsks.h"
#include "PopupScene.h"

#include <QNetworkProxy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_proxysignin : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cancelShowsTheAnswer();
    void tunnelIsAskedForToo();
    void wrongThenRight();
    void knownToAllThatComes();

private:
    PageQuestionBox *question() const { return PageAsks::shownIn(m_form); }
    static void enter(const PageQuestionBox *box, const QString &password);
    static int countWith(const QByteArray &password);

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

namespace {
TestServer *proxy = nullptr;

QByteArray basic(const QByteArray &password)
{
    return "Basic " + ("me:" + password).toBase64();
}

TestServer::Reply answer(const TestServer::Request &request)
{
    TestServer::Reply reply;
    if (request.headers.value("proxy-authorization") == basic("secret")) {
        reply.body = "<title>Through</title>";
        return reply;
    }
    reply.status = 407;
    reply.headers = {{"Proxy-Authenticate", "Basic realm=\"Gate\""}};
    reply.body = "<title>Stopped</title>";
    return reply;
}
}

void tst_proxysignin::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    proxy->forgetRequests();
}

void tst_proxysignin::cleanup()
{
    m_scene.reset();
}

void tst_proxysignin::enter(const PageQuestionBox *box, const QString &password)
{
    box->findChild<QLineEdit *>(u"txtUser"_s)->setText(u"me"_s);
    box->findChild<QLineEdit *>(u"txtPassword"_s)->setText(password);
    PageAsks::press(PageAsks::yes(box));
}

int tst_proxysignin::countWith(const QByteArray &password)
{
    int count = 0;
    for (const TestServer::Request &each : proxy->requests())
        count += each.headers.value("proxy-authorization") == basic(password) ? 1 : 0;
    return count;
}

void tst_proxysignin::cancelShowsTheAnswer()
{
    m_form = m_scene->frame.open(u"http://site.test/page"_s, true);
    QTRY_VERIFY(question());
    QCOMPARE(PageAsks::titleOf(question()), u"The proxy asks you to sign in:"_s);
    const QStringList lines = PageAsks::textOf(question()).split(u'\n');
    QCOMPARE(lines.first(), u"127.0.0.1:%1"_s.arg(proxy->port()));
    QVERIFY(lines.contains(u"Gate"_s));
    QVERIFY(!PageAsks::textOf(question()).contains("site.test"_L1));
    PageAsks::press(PageAsks::no(question()));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QVERIFY(!question());
    QCOMPARE(countWith("secret"), 0);
}

/// On the way to a secure page the proxy, whose own connection is open, asks before there is one.
void tst_proxysignin::tunnelIsAskedForToo()
{
    m_form = m_scene->frame.open(u"https://secure.test/page"_s, true);
    QTRY_VERIFY(question());
    const QString words = PageAsks::textOf(question());
    QCOMPARE(words.section(u'\n', 0, 0), u"127.0.0.1:%1"_s.arg(proxy->port()));
    QVERIFY(words.contains("not encrypted"_L1) && !words.contains("secure.test"_L1));
    QCOMPARE(proxy->requests("secure.test:443").first().method, "CONNECT");
    PageAsks::press(PageAsks::no(question()));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QVERIFY(!question());
}

void tst_proxysignin::wrongThenRight()
{
    m_form = m_scene->frame.open(u"http://site.test/page"_s, true);
    QTRY_VERIFY(question());
    QTRY_VERIFY(!m_form->browser()->isBusy());
    const QPointer<PageQuestionBox> first = question();
    enter(first, u"wrong"_s);
    QTRY_VERIFY(question() && question() != first);
    QVERIFY(PageAsks::textOf(question()).contains("not accepted"_L1));
    enter(question(), u"secret"_s);
    QTRY_COMPARE(m_form->windowTitle(), u"Through"_s);
    QVERIFY(!question());
    QCOMPARE(countWith("wrong"), 1);
}

void tst_proxysignin::knownToAllThatComes()
{
    m_form = m_scene->frame.open(u"http://other.test/page"_s, true);
    QTRY_COMPARE(m_form->windowTitle(), u"Through"_s);
    QVERIFY(!question());
}

int main(int argc, char **argv)
{
    return runEngineTest<tst_proxysignin>(argc, argv, [] {
        proxy = new TestServer(TestServer::Kind::Http, qApp);
        proxy->handle("http://site.test/page", answer);
        proxy->handle("http://other.test/page", answer);
        proxy->handle("secure.test:443", answer);
        QNetworkProxy::setApplicationProxy(
            {QNetworkProxy::HttpProxy, u"127.0.0.1"_s, quint16(proxy->port())});
    });
}

#include "tst_proxysignin.moc"
