#include "../Session.h"
#include "Answer.h"
#include "EngineTest.h"
#include "PageAsks.h"
#include "RichTextBox.h"
#include "SourceEditor.h"
#include "SourceWindow.h"

#include <QBuffer>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

/// The source of real pages as their server sent it, in the program's own viewer.
class tst_SourceAsItCame : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void scriptsChangeNothing();
    void isAskedForOnlyWhereNothingKeptIt();
    void encodings_data();
    void encodings();
    void bodyOfAnError();
    void redirected_data();
    void redirected();
    void answerToAFormIsNotAskedForAgain();
    void pictureHasNone();
    void pageBehindALogin();
    void serverThatIsGone();
    void noticeIsAnsweredNo();
    void fileOnTheDisk();
    void addressThatIsThePage();
    void bytesOfAnotherPage();
    void privateSourceStaysPrivate();
    void engineCommandLeadsHere();
    void longSource();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    void open(const QString &address) const
    {
        m_session->start(address);
        QTRY_VERIFY2(m_session->shows(address), qPrintable(m_session->location()));
    }
    QWebEnginePage &page() const
    {
        return *m_session->active()->findChild<QWebEngineView *>()->page();
    }
    /// Of the source window that comes up; line ends as in the editor.
    static QString shown()
    {
        if (!QTest::qWaitFor([] { return !Forms::named("frmSource").isEmpty(); }, patience))
            return u"no window"_s;
        return window()->editor().text();
    }
    static SourceWindow *window()
    {
        return qobject_cast<SourceWindow *>(Forms::named("frmSource").value(0));
    }

    std::unique_ptr<Session> m_session;
};

void tst_SourceAsItCame::init()
{
    m_session = std::make_unique<Session>();
    QVERIFY(m_session->folder.isValid() && m_session->server.isListening());
}

void tst_SourceAsItCame::scriptsChangeNothing()
{
    const QByteArray bytes = "<!DOCTYPE html>\n<title>A</title><p id=p>before"
                             "<script>p.textContent = 'after'</script>";
    m_session->server.page("/page", bytes);
    open(url(u"/page"_s));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), QString::fromUtf8(bytes).replace(u'\n', "\r\n"_L1));
    QCOMPARE(m_session->server.count("/page"), 1);
    QVERIFY(window()->windowTitle().startsWith(url(u"/page"_s)));
    QCOMPARE(window()->editor().selStart(), 0);
    // Unlike the document as it is now.
    delete window();
    m_session->choose("mnuViewDocumentHTML");
    QVERIFY(shown().contains("after</p>"_L1));
}

void tst_SourceAsItCame::isAskedForOnlyWhereNothingKeptIt()
{
    m_session->server.reply("/page",
                            {200,
                             "<title>A</title>",
                             "text/html",
                             {{"Cache-Control", "no-store"}, {"Set-Cookie", "guest=one"}}});
    open(url(u"/page"_s));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<title>A</title>"_s);
    const QList<TestServer::Request> requests = m_session->server.requests("/page");
    QCOMPARE(requests.size(), 2);
    QCOMPARE(requests.last().method, QByteArray("GET"));
    QCOMPARE(requests.last().headers.value("cookie"), QByteArray("guest=one"));
}

void tst_SourceAsItCame::encodings_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const QByteArray html = "text/html";
    QTest::newRow("header") << QByteArray("text/html; charset=shift_jis")
                            << QByteArray("<p>\x93\xfa\x96\x7b") << u"<p>日本"_s;
    QTest::newRow("markup") << html << QByteArray("<meta charset=windows-1251><p>\xcf\xf0\xe8")
                            << u"<meta charset=windows-1251><p>При"_s;
    QTest::newRow("mark") << html << QByteArray("\xEF\xBB\xBF<p>gr\xc3\xbcn") << u"<p>grün"_s;
    QTest::newRow("sixteen bits") << html << QByteArray("\xff\xfe<\0p\0>\0\xe9\0", 10) << u"<p>é"_s;
    QTest::newRow("text alone") << QByteArray("text/plain; charset=utf-8")
                                << QByteArray("1 < 2 \xe2\x82\xac") << u"1 < 2 €"_s;
    QTest::newRow("other markup")
        << QByteArray("application/xhtml+xml")
        << QByteArray("<?xml version='1.0' encoding='iso-8859-1'?>"
                      "<html xmlns='http://www.w3.org/1999/xhtml'><p>\xfc</p></html>")
        << u"<?xml version='1.0' encoding='iso-8859-1'?>"
           "<html xmlns='http://www.w3.org/1999/xhtml'><p>ü</p></html>"_s;
    QTest::newRow("nothing") << html << QByteArray() << QString();
}

void tst_SourceAsItCame::encodings()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    m_session->server.reply("/page", {200, bytes, type, {}});
    open(url(u"/page"_s));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), text);
}

void tst_SourceAsItCame::bodyOfAnError()
{
    m_session->server.reply("/none", {404, "<h1>No such page", "text/html", {}});
    open(url(u"/none"_s));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<h1>No such page"_s);
}

void tst_SourceAsItCame::redirected_data()
{
    QTest::addColumn<QString>("host");
    QTest::newRow("same site") << u"127.0.0.1"_s;
    QTest::newRow("another site") << u"localhost"_s;
}

void tst_SourceAsItCame::redirected()
{
    QFETCH(QString, host);
    const QString target = m_session->server.url(u"/target"_s, host);
    m_session->server.redirect("/page", target.toUtf8());
    m_session->server.page("/target", "<title>Target</title>");
    m_session->start(url(u"/page"_s));
    QTRY_VERIFY(m_session->shows(target));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<title>Target</title>"_s);
    QVERIFY(window()->windowTitle().startsWith(target));
}

void tst_SourceAsItCame::answerToAFormIsNotAskedForAgain()
{
    m_session->server.page("/form",
                           "<form id=f method=post action=/answer><input name=n value=v></form>");
    m_session->server.page("/answer", "<title>The answer</title>to the form");
    open(url(u"/form"_s));
    page().runJavaScript(u"f.submit()"_s);
    QTRY_VERIFY(m_session->shows(url(u"/answer"_s)));
    const Answer yes(QMessageBox::Yes);
    m_session->choose("mnuViewSource");
    QVERIFY(shown().contains("<body>to the form</body>"_L1));
    QCOMPARE(yes.count(), 1);
    QVERIFY(yes.text().contains("form"_L1));
    QCOMPARE(m_session->server.count("/answer"), 1);
}

void tst_SourceAsItCame::pictureHasNone()
{
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG"));
    m_session->server.reply("/picture.png", {200, bytes, "image/png", {}});
    open(url(u"/picture.png"_s));
    const Answer ok(QMessageBox::Ok);
    m_session->choose("mnuViewSource");
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(Forms::named("frmSource").isEmpty());
}

void tst_SourceAsItCame::pageBehindALogin()
{
    const QByteArray known = "Basic " + QByteArray("me:secret").toBase64();
    m_session->server.handle("/inside", [known](const TestServer::Request &request) {
        TestServer::Reply reply{
            200, "<title>Inside</title>", "text/html", {{"Cache-Control", "no-store"}}};
        if (request.headers.value("authorization") != known) {
            reply.status = 401;
            reply.headers = {{"WWW-Authenticate", "Basic realm=\"room\""}};
        }
        return reply;
    });
    m_session->start(url(u"/inside"_s));
    QTRY_VERIFY(m_session->active() && PageAsks::shownIn(m_session->active()));
    const PageQuestionBox *box = PageAsks::shownIn(m_session->active());
    box->findChild<QLineEdit *>(u"txtUser"_s)->setText(u"me"_s);
    box->findChild<QLineEdit *>(u"txtPassword"_s)->setText(u"secret"_s);
    PageAsks::press(PageAsks::yes(box));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"Inside"_s);
    QTRY_VERIFY(m_session->shows(url(u"/inside"_s)));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<title>Inside</title>"_s);
    QVERIFY(!PageAsks::shownIn(m_session->active()));
}

void tst_SourceAsItCame::serverThatIsGone()
{
    TestServer::Reply reply{200, "<p>once", "text/html", {{"Cache-Control", "no-store"}}};
    m_session->server.reply("/page", reply);
    open(url(u"/page"_s));
    reply.hangUp = true;
    m_session->server.reply("/page", reply);
    const Answer yes(QMessageBox::Yes);
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<html><head></head><body><p>once</p></body></html>"_s);
    QCOMPARE(yes.count(), 1);
}

void tst_SourceAsItCame::noticeIsAnsweredNo()
{
    TestServer::Reply reply{200, "<p>once", "text/html", {{"Cache-Control", "no-store"}}};
    m_session->server.reply("/page", reply);
    open(url(u"/page"_s));
    reply.hangUp = true;
    m_session->server.reply("/page", reply);
    const Answer no(QMessageBox::No);
    m_session->choose("mnuViewSource");
    QTRY_COMPARE(no.count(), 1);
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QVERIFY(Forms::named("frmSource").isEmpty());
}

void tst_SourceAsItCame::fileOnTheDisk()
{
    m_session->folder.write(u"local.html"_s, "<title>F</title>gr\xc3\xbcn<meta charset=utf-8>");
    open(QUrl::fromLocalFile(m_session->folder.file(u"local.html"_s)).toString());
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<title>F</title>grün<meta charset=utf-8>"_s);
}

void tst_SourceAsItCame::addressThatIsThePage()
{
    open(u"data:text/html;charset=utf-8,%3Cp%3Egr%C3%BCn"_s);
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<p>grün"_s);
    delete window();
    const QString packed = u"data:text/html;base64,PHA+eA=="_s;
    m_session->frame->navigateActive(packed);
    QTRY_VERIFY(m_session->shows(packed));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<p>x"_s);
}

/// The bytes went with the page that had made them.
void tst_SourceAsItCame::bytesOfAnotherPage()
{
    open(url(u"/home"_s));
    page().runJavaScript(
        u"location = URL.createObjectURL(new Blob(['<p>inside'], {type: 'text/html'}))"_s);
    QTRY_VERIFY(m_session->location().startsWith("blob:"_L1)
                && m_session->shows(m_session->location()));
    const Answer yes(QMessageBox::Yes);
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<html><head></head><body><p>inside</p></body></html>"_s);
    QCOMPARE(yes.count(), 1);
}

void tst_SourceAsItCame::privateSourceStaysPrivate()
{
    m_session->server.reply("/page",
                            {200,
                             "<title>A</title>",
                             "text/html",
                             {{"Cache-Control", "no-store"}, {"Set-Cookie", "guest=one"}}});
    open(url(u"/home"_s));
    m_session->choose("mnuFileNewPrivate");
    m_session->active()->browser()->navigate(url(u"/page"_s));
    QTRY_VERIFY(m_session->shows(url(u"/page"_s)));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown(), u"<title>A</title>"_s);
    QVERIFY(window()->isPrivate());
    // From the private profile, which alone has the cookie.
    QCOMPARE(m_session->server.requests("/page").last().headers.value("cookie"),
             QByteArray("guest=one"));
    QTest::keyClicks(&window()->editor().box(), u"x"_s);
    QVERIFY(window()->close());
    QVERIFY(!QDir(m_session->folder.file(u"AppData/Recovered"_s)).exists());
}

void tst_SourceAsItCame::engineCommandLeadsHere()
{
    m_session->server.page("/page", "<title>A</title>");
    open(url(u"/page"_s));
    page().triggerAction(QWebEnginePage::ViewSource);
    QCOMPARE(shown(), u"<title>A</title>"_s);
    QCOMPARE(m_session->windows(), 1);
}

void tst_SourceAsItCame::longSource()
{
    constexpr int lines = 100'000;
    const QByteArray bytes =
        "<!--" + QByteArray("all of it is a comment, and nothing else\n").repeated(lines);
    m_session->server.page("/long", bytes);
    open(url(u"/long"_s));
    m_session->choose("mnuViewSource");
    QCOMPARE(shown().size(), bytes.size() + lines);
}

ORVANE_ENGINE_TEST_MAIN(tst_SourceAsItCame)
#include "tst_sourceasitcame.moc"
