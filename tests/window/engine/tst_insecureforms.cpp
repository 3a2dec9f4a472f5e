// Forms of encrypted pages that would be sent unencrypted.
#include "EngineTest.h"
#include "PageAsks.h"
#include "PopupScene.h"
#include "TestCertificates.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class tst_insecureforms : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void userIsAsked();
    void sentUnchanged_data();
    void sentUnchanged();
    void cancelSendsNothing();
    void scriptedSubmitIsHeld();
    void fieldsThatHideMethods();
    void buttonThatNamesAnotherTarget();
    void listenersThatAddToTheForm();
    void formsToThisMachineAreNotHeld();
    void encryptedTargetIsNotHeld();
    void plainPageMaySend();
    void redirectOutOfEncryptionIsBlocked();
    void formIntoAnotherWindow();
    void fieldsInTheAddressOfAnotherWindow();
    void linkIntoAnotherWindowIsNotHeld();
    void formInAShadowTree();
    void formInAClosedShadowTree();
    void formInAClosedShadowTreeIntoAnotherWindow();
    void floodOfFrames();
    void formOfAFrameToTheTop();
    void formOfAnotherSitesFrame();
    void filesAreSent();
    void floodIsAskedOnce();
    void pageThatClosesItself();
    void windowClosedWhileAsking();
    void questionGoesWithItsPage();
    void grantIsForOneFormAlone();
    void answerMayBeReloaded();

private:
    QString secure(const QString &path) const { return m_secure->url(path, u"secure.test"_s); }
    QByteArray target(const QString &path = u"/send"_s) const
    {
        return m_scene->server.url(path, u"plain.test"_s).toUtf8();
    }
    void open(const QByteArray &body)
    {
        m_secure->page("/form", "<title>form</title><body>" + body);
        m_form = m_scene->frame.open(secure(u"/form"_s));
        PopupScene::waitUntilLoaded(m_form);
        QTRY_COMPARE(m_form->windowTitle(), u"form"_s);
    }
    QByteArray simpleForm(const QByteArray &more = {}) const
    {
        return "<form method=post action='" + target() + "' " + more
            + "><input name=a value=one><button id=go name=b value=two>Go</button></form>";
    }
    PageQuestionBox *question() const { return PageAsks::shownIn(m_form); }
    void answer(QPushButton *button)
    {
        QVERIFY(button);
        PageAsks::press(button);
    }
    int sent() const { return m_scene->server.count("/send"); }
    TestServer::Request last() const { return m_scene->server.requests("/send").last(); }

    QTemporaryDir m_folder;
    std::unique_ptr<PopupScene> m_scene;
    std::unique_ptr<TestServer> m_secure;
    QPointer<BrowserWindow> m_form;
};

void tst_insecureforms::initTestCase()
{
    const QString wrong = TestCertificates::make(m_folder.path(), QDir::homePath());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_insecureforms::init()
{
    m_scene = std::make_unique<PopupScene>();
    m_secure = std::make_unique<TestServer>(TestCertificates::shaped(
        m_folder.path(), {.names = {u"DNS:secure.test"_s, u"DNS:other.test"_s}}));
    m_scene->server.page("/send", "<title>Sent</title>");
    m_secure->page("/send", "<title>Sent</title>");
}

void tst_insecureforms::cleanup()
{
    m_scene.reset();
    m_secure.reset();
}

void tst_insecureforms::userIsAsked()
{
    open(simpleForm());
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    QCOMPARE(PageAsks::textOf(question()),
             u"What you entered would be sent unencrypted to http://plain.test:%1."_s.arg(
                 m_scene->server.port()));
    QVERIFY(
        PageAsks::askerOf(question()).contains(u"https://secure.test:%1"_s.arg(m_secure->port())));
    QCOMPARE(sent(), 0);
    QCOMPARE(m_form->windowTitle(), u"form"_s);
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(m_form->windowTitle(), u"Sent"_s);
    QCOMPARE(sent(), 1);
    QCOMPARE(last().body, "a=one&b=two");
    QTRY_VERIFY(!question());
}

void tst_insecureforms::sentUnchanged_data()
{
    QTest::addColumn<QByteArray>("form");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("get") << QByteArray("<form action='TARGET?old=1'><input name=q value='ä b&c'>"
                                       "<button id=go>x</button></form>")
                         << QByteArray("GET") << QByteArray("/send?q=%C3%A4+b%26c") << QByteArray();
    QTest::newRow("lines") << QByteArray("<form method=post action='TARGET?x=1'><textarea name=t>"
                                         "one\ntwo</textarea><button id=go>x</button></form>")
                           << QByteArray("POST") << QByteArray("/send?x=1")
                           << QByteArray("t=one%0D%0Atwo");
    QTest::newRow("charset") << QByteArray(
        "<form method=post accept-charset=windows-1252 action='TARGET'>"
        "<input name=_charset_ type=hidden><input name=t value='ä'>"
        "<button id=go>x</button></form>")
                             << QByteArray("POST") << QByteArray("/send")
                             << QByteArray("_charset_=windows-1252&t=%E4");
    QTest::newRow("plain text") << QByteArray(
        "<form method=post enctype=text/plain action='TARGET'>"
        "<input name=t value='a b'><button id=go>x</button></form>")
                                << QByteArray("POST") << QByteArray("/send")
                                << QByteArray("t=a b\r\n");
    QTest::newRow("image button") << QByteArray(
        "<form method=post action='TARGET'><input type=image id=go name=p alt=x "
        "style='width:10px;height:10px'></form>")
                                  << QByteArray("POST") << QByteArray("/send")
                                  << QByteArray("p.x=5&p.y=5");
}

void tst_insecureforms::sentUnchanged()
{
    QFETCH(QByteArray, form);
    QFETCH(QByteArray, method);
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, body);
    open("<meta charset=utf-8>" + form.replace("TARGET", target()));
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().method, method);
    QCOMPARE(last().path, path);
    QCOMPARE(last().body, body);
}

void tst_insecureforms::cancelSendsNothing()
{
    open(simpleForm());
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::no(question()));
    QTRY_VERIFY(!question());
    m_scene->server.page("/after", "<title>after</title>");
    m_form->browser()->navigate(QString::fromUtf8(target(u"/after"_s)));
    QTRY_COMPARE(m_form->windowTitle(), u"after"_s);
    QCOMPARE(sent(), 0);
}

void tst_insecureforms::scriptedSubmitIsHeld()
{
    open(simpleForm());
    PopupScene::script(m_form, u"document.forms[0].submit(); 1"_s);
    QTRY_VERIFY(question());
    QCOMPARE(sent(), 0);
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().body, "a=one");
}

void tst_insecureforms::fieldsThatHideMethods()
{
    open("<form method=post action='" + target()
         + "'><input name=getAttribute value=1><input name=submit value=2><input name=action "
           "value=3><input name=method value=4><button id=go>x</button></form>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().body, "getAttribute=1&submit=2&action=3&method=4");
}

void tst_insecureforms::buttonThatNamesAnotherTarget()
{
    open("<form action='/send'><input name=a value=1><button id=go formmethod=post formaction='"
         + target() + "'>x</button></form>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().method, "POST");
    QCOMPARE(last().body, "a=1");
}

void tst_insecureforms::listenersThatAddToTheForm()
{
    open(simpleForm()
         + "<script>addEventListener('formdata', (e) => e.formData.append('late', 'yes'))"
           "</script>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().body, "a=one&b=two&late=yes");
}

void tst_insecureforms::formsToThisMachineAreNotHeld()
{
    open("<form method=post action='" + m_scene->server.url(u"/send"_s).toUtf8()
         + "'><button id=go>x</button></form>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_COMPARE(sent(), 1);
    QVERIFY(!question());
}

void tst_insecureforms::encryptedTargetIsNotHeld()
{
    open("<form method=post action=/send><button id=go>x</button></form>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_COMPARE(m_secure->count("/send"), 1);
    QVERIFY(!question());
}

void tst_insecureforms::plainPageMaySend()
{
    m_scene->server.page("/form", "<title>form</title><body>" + simpleForm());
    m_form = m_scene->frame.open(QString::fromUtf8(target(u"/form"_s)));
    PopupScene::waitUntilLoaded(m_form);
    PopupScene::click(m_form, u"go"_s);
    QTRY_COMPARE(sent(), 1);
    QVERIFY(!question());
}

/// What was entered stays on encrypted connections whatever the first server answers, and when the
/// user tries again; the page says why.
void tst_insecureforms::redirectOutOfEncryptionIsBlocked()
{
    m_secure->redirect("/out", target(), 307);
    open("<form method=post action=/out><input name=a value=1><button id=go>x</button></form>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_COMPARE(m_secure->count("/out"), 1);
    QTRY_VERIFY(m_form->browser()->locationUrl().startsWith("http:"_L1)
                && !m_form->browser()->isBusy());
    QTRY_VERIFY(PopupScene::script(m_form, u"document.body.innerText"_s)
                    .toString()
                    .contains("It was not sent there."_L1));
    QCOMPARE(sent(), 0);
    PopupScene::click(m_form, u"tryAgain"_s);
    QTRY_VERIFY(question() || m_secure->count("/out") == 2 || sent() == 1);
    if (question())
        answer(PageAsks::yes(question()));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    for (const TestServer::Request &each : m_scene->server.requests("/send"))
        QCOMPARE(each.body, QByteArray());
}

/// The window that was opened for it goes while the user is asked.
void tst_insecureforms::formIntoAnotherWindow()
{
    open(simpleForm("target=_blank"));
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    QTRY_COMPARE(PopupScene::popups().size(), 0);
    QCOMPARE(sent(), 0);
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().body, "a=one&b=two");
    QCOMPARE(m_form->windowTitle(), u"form"_s);
}

void tst_insecureforms::fieldsInTheAddressOfAnotherWindow()
{
    open("<form target=_blank action='" + target()
         + "'><input name=a value=one><button id=go>Go</button></form>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    QCOMPARE(sent(), 0);
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().path, "/send?a=one");
}

void tst_insecureforms::linkIntoAnotherWindowIsNotHeld()
{
    open("<a id=go target=_blank rel=opener href='" + target() + "'>link</a>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_COMPARE(sent(), 1);
    QVERIFY(!question());
}

/// Sent as it was, with the button that was pressed.
void tst_insecureforms::formInAShadowTree()
{
    open("<div id=go></div><script>const root = document.getElementById('go').attachShadow("
         "{ mode: 'open' }); root.innerHTML = `<style>button { width: 90%; height: 90% }</style>"
         + simpleForm()
         + "<div id=in></div>`; const inner = root.getElementById('in')"
           ".attachShadow({ mode: 'open' }); inner.innerHTML = `"
         + simpleForm() + "`;</script>");
    for (const QString &tree : {u"root"_s, u"inner"_s}) {
        PopupScene::script(m_form, tree + u".querySelector('button').click(); 1"_s);
        QTRY_VERIFY(question());
        const int before = sent();
        answer(PageAsks::yes(question()));
        QTRY_COMPARE(sent(), before + 1);
        QCOMPARE(last().body, "a=one&b=two");
        QTRY_COMPARE(m_form->windowTitle(), u"Sent"_s);
        if (tree == "root"_L1) {
            m_form->browser()->goBack();
            QTRY_COMPARE(m_form->windowTitle(), u"form"_s);
        }
    }
}

/// A thousand forms of a hundred frames are one question, and none of them is sent.
void tst_insecureforms::floodOfFrames()
{
    m_secure->page("/frame",
                   simpleForm("target=_top")
                       + "<script>onmessage = () => { for (let i = 0; i < 10; ++i)"
                         "document.forms[0].submit(); }</script>");
    // All at once: frames that are still to come go with the first that is sent.
    open(QByteArray("<iframe src=/frame></iframe>").repeated(100)
         + "<script>onload = () => { for (let i = 0; i < 100; ++i) frames[i].postMessage(1); "
           "}</script>");
    QTRY_COMPARE_WITH_TIMEOUT(m_secure->count("/frame"), 100, 30000);
    QTRY_VERIFY(question());
    QTRY_VERIFY_WITH_TIMEOUT(!m_form->browser()->isBusy(), 30000);
    QCOMPARE(PageAsks::countIn(m_form), 1);
    answer(PageAsks::no(question()));
    QTRY_VERIFY(!question());
    QCOMPARE(sent(), 0);
    QCOMPARE(m_form->windowTitle(), u"form"_s);
}

/// No script of ours sees what it sends; it is held all the same, and goes when the user presses
/// its button once more.
void tst_insecureforms::formInAClosedShadowTree()
{
    open("<div id=go></div><script>const root = document.getElementById('go').attachShadow("
         "{ mode: 'closed' }); root.innerHTML = `"
         + simpleForm() + "`; function press() { root.querySelector('button').click(); }</script>");
    PopupScene::script(m_form, u"press(); 1"_s);
    QTRY_VERIFY(question());
    QVERIFY2(PageAsks::textOf(question())
                 .endsWith("If you agree, you have to press the button of the form once more."_L1),
             qPrintable(PageAsks::textOf(question())));
    QCOMPARE(sent(), 0);
    answer(PageAsks::yes(question()));
    // What was said is not said again.
    QTRY_VERIFY(!question());
    PopupScene::script(m_form, u"press(); 1"_s);
    QTRY_COMPARE(sent(), 1);
    QVERIFY(!question());
    QCOMPARE(last().body, "a=one&b=two");
}

/// Nothing of ours knows that it is a form; the window it opens says what became of it.
void tst_insecureforms::formInAClosedShadowTreeIntoAnotherWindow()
{
    open("<div id=go></div><script>const root = document.getElementById('go').attachShadow("
         "{ mode: 'closed' }); root.innerHTML = `"
         + simpleForm("target=_blank")
         + "`; function press() { root.querySelector('button').click(); }</script>");
    PopupScene::script(m_form, u"press(); 1"_s);
    const BrowserWindow *window = PopupScene::waitForPopup();
    QVERIFY(window);
    QTRY_VERIFY(PageAsks::shownIn(window)
                || PopupScene::script(window, u"document.body.innerText"_s)
                       .toString()
                       .contains("It was not sent there."_L1));
    QCOMPARE(sent(), 0);
}

void tst_insecureforms::formOfAFrameToTheTop()
{
    m_secure->page("/frame", simpleForm("target=_top"));
    open("<iframe id=f src=/frame></iframe>");
    PopupScene::script(m_form,
                       u"document.getElementById('f').contentDocument.forms[0].submit(); 1"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().body, "a=one");
}

/// What was entered is kept in the frame's own process, and sent from there.
void tst_insecureforms::formOfAnotherSitesFrame()
{
    m_secure->page("/frame",
                   "<style>button { position: fixed; inset: 0; }</style><script>"
                   "new PerformanceObserver(() => fetch('/painted'))"
                   ".observe({ type: 'paint', buffered: true });"
                   "addEventListener('click', () => fetch('/pressed'), true)</script>"
                       + simpleForm("target=_top"));
    open("<iframe id=f src='" + m_secure->url(u"/frame"_s, u"other.test"_s).toUtf8()
         + "'></iframe>");
    // It is painted later than the page around it.
    QTRY_VERIFY(m_secure->count("/painted") > 0);
    // Pressed again where the press was too early; a second one that is heard would be sent.
    const auto isPressed = [this] {
        if (m_secure->count("/pressed") > 0)
            return true;
        PopupScene::click(m_form, u"f"_s);
        return QTest::qWaitFor([this] { return m_secure->count("/pressed") > 0; }, 5000);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isPressed(), PopupScene::patience);
    QTRY_VERIFY(question());
    QVERIFY2(PageAsks::askerOf(question()).contains("https://other.test"_L1),
             qPrintable(PageAsks::askerOf(question())));
    QCOMPARE(sent(), 0);
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    QCOMPARE(last().body, "a=one&b=two");
    QVERIFY(!question());
}

void tst_insecureforms::filesAreSent()
{
    open("<form method=post enctype=multipart/form-data action='" + target()
         + "'><input type=file name=none><input type=file id=f name=files multiple>"
           "<button id=go>x</button></form><script>const files = new DataTransfer();"
           "files.items.add(new File(['first'], 'one.txt', { type: 'text/x-one' }));"
           "files.items.add(new File(['second'], 'two.txt'));"
           "document.getElementById('f').files = files.files;</script>");
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 1);
    const QByteArray body = last().body;
    for (const char *part :
         {"name=\"none\"; filename=\"\"", "filename=\"one.txt\"", "text/x-one\r\n\r\nfirst\r\n",
          "filename=\"two.txt\"", "\r\n\r\nsecond\r\n"})
        QVERIFY2(body.contains(part), body.constData());
}

void tst_insecureforms::floodIsAskedOnce()
{
    open(simpleForm());
    PopupScene::script(m_form,
                       u"let n = 0; const t = setInterval(() => { if (n++ < 200)"
                       "document.forms[0].submit(); else { clearInterval(t); document.title = "
                       "'through'; } }, 1); 1"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_form->windowTitle(), u"through"_s, 30000);
    QTRY_VERIFY(question());
    QCOMPARE(PageAsks::countIn(m_form), 1);
    answer(PageAsks::no(question()));
    QTRY_VERIFY(!question());
    PopupScene::script(m_form, u"document.forms[0].submit(); 1"_s);
    PopupScene::script(m_form, u"1"_s);
    QVERIFY(!question());
    QCOMPARE(sent(), 0);
}

void tst_insecureforms::pageThatClosesItself()
{
    open({});
    BrowserWindow *opener = m_form;
    m_secure->page("/popup", "<title>popup</title><body>" + simpleForm());
    PopupScene::script(opener, u"window.w = window.open('/popup'); 1"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QTRY_COMPARE(popup->windowTitle(), u"popup"_s);
    PopupScene::script(popup, u"document.forms[0].submit(); 1"_s);
    QTRY_VERIFY(PageAsks::shownIn(popup));
    PopupScene::script(popup, u"window.close(); 1"_s);
    popup->unload();
    QTRY_COMPARE(PopupScene::popups().size(), 0);
    QCOMPARE(sent(), 0);
}

void tst_insecureforms::windowClosedWhileAsking()
{
    open(simpleForm());
    PopupScene::script(m_form, u"document.forms[0].submit(); 1"_s);
    QTRY_VERIFY(question());
    m_form->close();
    QTRY_VERIFY(!m_form);
    QCOMPARE(sent(), 0);
}

void tst_insecureforms::questionGoesWithItsPage()
{
    open(simpleForm());
    m_secure->page("/next", "<title>next</title>");
    PopupScene::script(m_form, u"document.forms[0].submit(); 1"_s);
    QTRY_VERIFY(question());
    m_form->browser()->navigate(secure(u"/next"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"next"_s);
    QTRY_VERIFY(!question());
    QCOMPARE(sent(), 0);
}

void tst_insecureforms::grantIsForOneFormAlone()
{
    TestServer::Reply nothing;
    nothing.status = 204;
    m_scene->server.reply("/none", nothing);
    open("<form method=post action='" + target(u"/none"_s) + "'><input name=a value=one></form>");
    PopupScene::script(m_form, u"document.forms[0].submit(); 1"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(m_scene->server.count("/none"), 1);
    QTRY_VERIFY(!question());
    PopupScene::script(m_form, u"document.forms[0].submit(); 1"_s);
    QTRY_VERIFY(question());
    QCOMPARE(m_scene->server.count("/none"), 1);
}

void tst_insecureforms::answerMayBeReloaded()
{
    open(simpleForm());
    PopupScene::click(m_form, u"go"_s);
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(m_form->windowTitle(), u"Sent"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    m_form->browser()->refresh();
    QTRY_VERIFY(question());
    answer(PageAsks::yes(question()));
    QTRY_COMPARE(sent(), 2);
    QCOMPARE(last().body, "a=one&b=two");
}

int main(int argc, char **argv)
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--host-resolver-rules=\"MAP *.test 127.0.0.1\"");
    return runEngineTest<tst_insecureforms>(argc, argv);
}
#include "tst_insecureforms.moc"
