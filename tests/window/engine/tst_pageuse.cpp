// Camera and microphone in use: said beside the page, and ended by a click.
#include "EngineTest.h"
#include "PageAsks.h"
#include "PopupScene.h"
#include "SitePermissions.h"
#include "StatusStrip.h"

#include <QAbstractButton>
#include <QTest>

using namespace Qt::StringLiterals;
using SitePermissions::Word;

class tst_pageuse : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void useIsSaid_data();
    void useIsSaid();
    void refusedIsNoUse();
    void placeIsNoUse();
    void useGoesWithThePage();
    void clickEndsIt_data();
    void clickEndsIt();
    void whatHoldsThePageDoesNotKeepIt_data();
    void whatHoldsThePageDoesNotKeepIt();
    void rememberedIsForgotten();
    void rememberedIsInUseAtOnce();
    void answerToAFormIsLeft();
    void framesUseIsThePages();
    void windowClosedWhileInUse();
    void keyboardEndsIt();
    void narrowWindowKeepsTheMark();

private:
    WebPage *page() const { return PopupScene::control(m_form)->page(); }
    void run(const QString &code) const { PopupScene::script(m_form, code + u"; 1"_s); }
    QString log() const { return PopupScene::script(m_form, u"log.join(' | ')"_s).toString(); }
    QAbstractButton *mark() const
    {
        return m_form->statusBar()->findChild<QAbstractButton *>(u"cmdEndUse"_s);
    }
    QString tabSays() const { return m_scene->frame.tabs.find(m_form->tabKey())->use; }
    void answer(bool yes, bool isForGood = false) const
    {
        QTRY_VERIFY(PageAsks::shownIn(m_form));
        const QPointer<PageQuestionBox> box = PageAsks::shownIn(m_form);
        if (isForGood)
            box->findChild<QCheckBox *>(u"chkRemember"_s)->setChecked(true);
        PageAsks::press(yes ? PageAsks::yes(box) : PageAsks::no(box));
    }
    void use(const QString &what, bool isForGood = false) const
    {
        run(u"use(%1)"_s.arg(what));
        answer(true, isForGood);
        QTRY_VERIFY(log().contains("yes"_L1));
    }
    int beats() const { return m_scene->server.count("/beat"); }
    /// Nothing comes any more, while twenty come from elsewhere at the same pace.
    void verifySilence()
    {
        BrowserWindow *other =
            m_scene->openPage("<script>setInterval(() => fetch('/other-beat'), 20)</script>", true);
        const int before = beats();
        const int others = m_scene->server.count("/other-beat");
        QTRY_VERIFY(m_scene->server.count("/other-beat") > others + 20);
        QCOMPARE(beats(), before);
        other->unload();
    }
    /// Another process has the page anew.
    void waitForReload(qint64 process) const
    {
        QTRY_VERIFY(page()->renderProcessPid() != process && page()->renderProcessPid() != 0);
        PopupScene::waitUntilLoaded(m_form);
    }

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

namespace {
/// While a track is live the page tells the server.
const QByteArray script = R"(<video id=v muted></video><script>
var log = [];
function use(what) {
  navigator.mediaDevices.getUserMedia(what).then(stream => {
    window.stream = stream;
    v.srcObject = stream;
    v.play();
    log.push('yes');
    setInterval(() => { if (stream.getTracks()[0].readyState == 'live') fetch('/beat') }, 20);
  }, error => log.push(error.name));
}
</script>)";
const QString camera = u"{video: true}"_s;
}

void tst_pageuse::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/beat", "");
    m_scene->server.page("/other-beat", "");
    m_scene->server.page("/other", "<title>other</title>" + script);
    m_form = m_scene->openPage(script, true);
}

void tst_pageuse::cleanup()
{
    m_scene.reset();
}

void tst_pageuse::useIsSaid_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("text");
    QTest::newRow("camera") << camera << u"Camera in use"_s;
    QTest::newRow("microphone") << u"{audio: true}"_s << u"Microphone in use"_s;
    QTest::newRow("both") << u"{video: true, audio: true}"_s << u"Camera and microphone in use"_s;
}

void tst_pageuse::useIsSaid()
{
    QFETCH(QString, what);
    QFETCH(QString, text);
    QVERIFY(!mark()->isVisible());
    QCOMPARE(tabSays(), QString());
    use(what);
    QVERIFY(mark()->isVisible());
    QCOMPARE(mark()->accessibleName(), text);
    QVERIFY(mark()->toolTip().startsWith(text));
    QCOMPARE(tabSays(), text);
}

void tst_pageuse::refusedIsNoUse()
{
    run(u"use({video: true})"_s);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    QVERIFY(!mark()->isVisible());
    answer(false);
    QTRY_COMPARE(log(), u"NotAllowedError"_s);
    QVERIFY(!mark()->isVisible());
}

void tst_pageuse::placeIsNoUse()
{
    run(u"navigator.geolocation.getCurrentPosition(() => {}, e => log.push(e.code))"_s);
    answer(true);
    QTRY_COMPARE(log(), u"2"_s);
    QVERIFY(!mark()->isVisible());
}

void tst_pageuse::useGoesWithThePage()
{
    use(camera);
    m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    QTRY_VERIFY(!mark()->isVisible());
    QCOMPARE(tabSays(), QString());
    PopupScene::waitUntilLoaded(m_form);
    use(camera);
    QVERIFY(mark()->isVisible());
    m_form->browser()->navigateLater(m_scene->server.url(u"/other"_s));
    QTRY_VERIFY(!mark()->isVisible());
    QCOMPARE(tabSays(), QString());
}

void tst_pageuse::clickEndsIt_data()
{
    QTest::addColumn<bool>("onTab");
    QTest::newRow("mark") << false;
    QTest::newRow("tab") << true;
}

void tst_pageuse::clickEndsIt()
{
    QFETCH(bool, onTab);
    use(camera);
    QTRY_VERIFY(beats() > 3);
    const QString address = m_form->browser()->locationUrl();
    const qint64 process = page()->renderProcessPid();
    if (onTab)
        m_form->endUse();
    else
        QTest::mouseClick(mark(), Qt::LeftButton);
    QVERIFY(!mark()->isVisible());
    QCOMPARE(tabSays(), QString());
    // The page comes anew, and is refused it from now on.
    waitForReload(process);
    QTRY_COMPARE(PopupScene::script(m_form, u"typeof stream"_s).toString(), u"undefined"_s);
    QCOMPARE(m_form->browser()->locationUrl(), address);
    run(u"use({video: true})"_s);
    QTRY_COMPARE(log(), u"NotAllowedError"_s);
    QVERIFY(!PageAsks::shownIn(m_form));
    QVERIFY(!mark()->isVisible());
    verifySilence();
    // Until the user comes to it again himself.
    m_scene->server.page("/opener", script);
    m_form->browser()->refresh();
    QTRY_COMPARE(log(), QString());
    use(camera);
    QVERIFY(mark()->isVisible());
}

void tst_pageuse::whatHoldsThePageDoesNotKeepIt_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QByteArray>("next");
    QTest::newRow("asks to stay") << u"onbeforeunload = e => { e.preventDefault(); return 'x' }"_s
                                  << QByteArray("page");
    QTest::newRow("server never answers") << QString() << QByteArray("silent");
    QTest::newRow("server has no page") << QString() << QByteArray("nothing");
    QTest::newRow("server sends a file") << QString() << QByteArray("file");
    QTest::newRow("script runs for ever")
        << u"setTimeout(() => { for (;;); }, 0)"_s << QByteArray("page");
}

void tst_pageuse::whatHoldsThePageDoesNotKeepIt()
{
    QFETCH(QString, code);
    QFETCH(QByteArray, next);
    use(camera);
    QTRY_VERIFY(beats() > 3);
    TestServer::Reply reply;
    reply.body = "<title>again</title>" + script;
    if (next == "silent")
        reply.silent = true;
    else if (next == "nothing")
        reply = {204, "", "text/html", {}};
    else if (next == "file")
        reply = {200, "x", "application/octet-stream", {{"Content-Disposition", "attachment"}}};
    m_scene->server.reply("/opener", reply);
    if (!code.isEmpty())
        run(code);
    const qint64 process = page()->renderProcessPid();
    m_form->endUse();
    QVERIFY(!mark()->isVisible());
    QTRY_VERIFY(page()->renderProcessPid() != process);
    verifySilence();
}

void tst_pageuse::rememberedIsForgotten()
{
    use(camera, true);
    const AskingSite site =
        AskingSite::of(QUrl(m_scene->server.url()), QUrl(m_scene->server.url()));
    QCOMPARE(SitePermissions::answer(site, Permission::Camera), Word::Allow);
    m_form->endUse();
    QVERIFY(!SitePermissions::answer(site, Permission::Camera));
}

void tst_pageuse::rememberedIsInUseAtOnce()
{
    const AskingSite site =
        AskingSite::of(QUrl(m_scene->server.url()), QUrl(m_scene->server.url()));
    QVERIFY(SitePermissions::keep(site, {Permission::Camera}, Word::Allow));
    run(u"use({video: true})"_s);
    QTRY_COMPARE(log(), u"yes"_s);
    QVERIFY(!PageAsks::shownIn(m_form));
    QVERIFY(mark()->isVisible());
}

/// Loading it anew would send the form once more.
void tst_pageuse::answerToAFormIsLeft()
{
    m_scene->server.page("/answer", "<title>answer</title>" + script);
    run(u"const f = document.createElement('form'); f.method = 'post'; f.action = '/answer'; "
        "document.body.append(f); f.submit()"_s);
    const QString url = m_scene->server.url(u"/answer"_s);
    QTRY_COMPARE(m_form->browser()->locationUrl(), url);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    use(camera);
    QTRY_VERIFY(beats() > 3);
    QTest::mouseClick(mark(), Qt::LeftButton);
    QTRY_COMPARE(m_form->browser()->locationUrl(), u"about:blank"_s);
    QTRY_VERIFY(!mark()->isVisible());
    QCOMPARE(m_scene->server.count("/answer"), 1);
    QVERIFY(!PageAsks::shownIn(m_form));
    verifySilence();
}

void tst_pageuse::framesUseIsThePages()
{
    m_scene->server.page("/frame", "<body>" + script + "<script>use({video: true})</script>");
    m_form = m_scene->openPage("<iframe allow='camera *' src='"
                                   + m_scene->server.url(u"/frame"_s, u"localhost"_s).toUtf8()
                                   + "'></iframe>",
                               true);
    answer(true);
    QTRY_VERIFY(mark()->isVisible());
    QTRY_VERIFY(beats() > 3);
    const qint64 process = page()->renderProcessPid();
    m_form->endUse();
    QVERIFY(!mark()->isVisible());
    // The frame asks again as it comes, and is refused without a question.
    waitForReload(process);
    verifySilence();
    QVERIFY(!PageAsks::shownIn(m_form));
}

void tst_pageuse::windowClosedWhileInUse()
{
    use(camera);
    QTRY_VERIFY(beats() > 3);
    m_form->unload();
    QTRY_VERIFY(!m_form);
    verifySilence();
}

void tst_pageuse::keyboardEndsIt()
{
    use(camera);
    QVERIFY(mark()->focusPolicy() & Qt::TabFocus);
    mark()->setFocus();
    QTest::keyClick(mark(), Qt::Key_Return);
    QVERIFY(!mark()->isVisible());
}

void tst_pageuse::narrowWindowKeepsTheMark()
{
    m_form->showNormal();
    m_form->resize(160, 200);
    use(camera);
    QVERIFY(mark()->width() >= 20);
    QVERIFY(m_form->statusBar()->rect().contains(mark()->geometry()));
}

int main(int argc, char **argv)
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") + " --use-fake-device-for-media-stream");
    return runEngineTest<tst_pageuse>(argc, argv);
}
#include "tst_pageuse.moc"
