// A page that is the answer to a form is reloaded, which sends the form again, only when the user
// says so.
#include "EngineTest.h"
#include "PageAsks.h"
#include "PopupScene.h"

#include <QSignalSpy>
#include <csignal>

using namespace Qt::StringLiterals;

class tst_resend : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void answerToAFormIsNotSentAgainUnasked_data();
    void answerToAFormIsNotSentAgainUnasked();
    void yesSendsItOnce();
    void askedOnceAtATime();
    void everyWindowAsksForItself();
    void nothingIsAskedElsewhere_data();
    void nothingIsAskedElsewhere();
    void tryAgainAsksToo();
    void stepToAnAnswerSendsNothing_data();
    void stepToAnAnswerSendsNothing();
    void stepToAnAnswerThatIsNotKept_data();
    void stepToAnAnswerThatIsNotKept();
    void scriptThatStepsSendsNothing();
    void crashedPageAsksToo();
    void crashedPageIsLeftWithoutSending();
    void nextPageIsFree();

private:
    int sent() const { return m_scene->server.count("/order"); }
    int asked() const { return PageAsks::countIn(m_form); }
    void answer(bool yes);
    void crash();
    void step(bool forward);
    void send(const QString &method, const QString &action);

    std::unique_ptr<PopupScene> m_scene;
    BrowserWindow *m_form = nullptr;
};

void tst_resend::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/order", "<title>Ordered</title>ordered");
    m_scene->server.redirect("/see", "/order", 303);
    m_scene->server.redirect("/keep", "/order", 307);
    TestServer::Reply broken;
    broken.hangUp = true;
    m_scene->server.reply("/broken", broken);
    m_form = m_scene->openPage("<form id=f><input name=a value=1></form>");
}

void tst_resend::cleanup()
{
    m_scene.reset();
}

void tst_resend::send(const QString &method, const QString &action)
{
    PopupScene::script(m_form,
                       u"f.method = '%1'; f.action = '%2'; f.submit(); 1"_s.arg(method, action));
    QTRY_COMPARE(m_form->windowTitle(), u"Ordered"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(sent(), 1);
}

void tst_resend::answer(bool yes)
{
    QTRY_COMPARE(asked(), 1);
    const PageQuestionBox *box = PageAsks::shownIn(m_form);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(PageAsks::textOf(box).contains("form"_L1));
    QCOMPARE(PageAsks::askerOf(box), u"http://127.0.0.1:%1"_s.arg(m_scene->server.port()));
    PageAsks::press(yes ? PageAsks::yes(box) : PageAsks::no(box));
    QTRY_COMPARE(asked(), 0);
}

void tst_resend::answerToAFormIsNotSentAgainUnasked_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("way");
    QTest::newRow("refresh") << u"/order"_s << 0;
    QTest::newRow("complete refresh") << u"/order"_s << 1;
    QTest::newRow("menu of the page") << u"/order"_s << 2;
    QTest::newRow("menu of the page, past the cache") << u"/order"_s << 3;
    QTest::newRow("form passed on") << u"/keep"_s << 0;
}

void tst_resend::answerToAFormIsNotSentAgainUnasked()
{
    QFETCH(const QString, action);
    QFETCH(const int, way);
    send(u"post"_s, action);
    WebPage *page = PopupScene::control(m_form)->page();
    if (way == 0)
        m_form->browser()->refresh();
    else if (way == 1)
        m_form->browser()->refresh2(3);
    else
        page->action(way == 2 ? QWebEnginePage::Reload : QWebEnginePage::ReloadAndBypassCache)
            ->trigger();
    answer(false);
    PopupScene::script(m_form, u"1"_s);
    QVERIFY(!m_form->browser()->isBusy());
    QCOMPARE(sent(), 1);
    QVERIFY(m_scene->server.requests("/order").last().method == "POST");
}

void tst_resend::yesSendsItOnce()
{
    send(u"post"_s, u"/order"_s);
    for (int times = 2; times < 4; ++times) {
        m_form->browser()->refresh();
        answer(true);
        QTRY_COMPARE(sent(), times);
        QTRY_VERIFY(!m_form->browser()->isBusy());
        QCOMPARE(m_scene->server.requests("/order").last().body, "a=1");
    }
}

void tst_resend::askedOnceAtATime()
{
    send(u"post"_s, u"/order"_s);
    for (int i = 0; i < 5; ++i)
        m_form->browser()->refresh();
    answer(false);
    m_form->browser()->refresh();
    QCOMPARE(asked(), 1);
    // The question goes with its page.
    m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"opener"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    const int opened = m_scene->server.count("/opener");
    QCOMPARE(asked(), 0);
    PopupScene::script(m_form, u"1"_s);
    QVERIFY(!m_form->browser()->isBusy());
    QCOMPARE(sent(), 1);
    QCOMPARE(m_scene->server.count("/opener"), opened);
}

/// Many pages loaded anew at once: none of them keeps the user from another.
void tst_resend::everyWindowAsksForItself()
{
    constexpr int windows = 5;
    send(u"post"_s, u"/order"_s);
    while (browserForms().size() < windows) {
        m_form = m_scene->openPage("<form id=f><input name=a value=1></form>");
        PopupScene::script(m_form, u"f.method = 'post'; f.action = '/order'; f.submit(); 1"_s);
        QTRY_COMPARE(m_form->windowTitle(), u"Ordered"_s);
        QTRY_VERIFY(!m_form->browser()->isBusy());
    }
    QCOMPARE(sent(), windows);
    for (const BrowserWindow *form : browserForms())
        form->browser()->refresh();
    for (const BrowserWindow *form : browserForms())
        QCOMPARE(PageAsks::countIn(form), 1);
    answer(true);
    QTRY_COMPARE(sent(), windows + 1);
    QCOMPARE(PageAsks::countIn(browserForms().first()), 1);
    QCOMPARE(sent(), windows + 1);
}

void tst_resend::nothingIsAskedElsewhere_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("action");
    QTest::newRow("fields in the address") << u"get"_s << u"/order"_s;
    QTest::newRow("sent on to another page") << u"post"_s << u"/see"_s;
}

void tst_resend::nothingIsAskedElsewhere()
{
    QFETCH(const QString, method);
    QFETCH(const QString, action);
    send(method, action);
    m_form->browser()->refresh();
    QTRY_COMPARE(sent(), 2);
    QCOMPARE(asked(), 0);
    QCOMPARE(m_scene->server.requests("/order").last().method, "GET");
}

void tst_resend::tryAgainAsksToo()
{
    PopupScene::script(m_form, u"f.method = 'post'; f.action = '/broken'; f.submit(); 1"_s);
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/broken"_s));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QTRY_COMPARE(PopupScene::script(m_form, u"String(!!document.getElementById('tryAgain'))"_s),
                 u"true"_s);
    const int before = m_scene->server.count("/broken");
    PopupScene::script(m_form, u"document.getElementById('tryAgain').click(); 1"_s);
    answer(false);
    QCOMPARE(m_scene->server.count("/broken"), before);
    m_form->browser()->refresh();
    answer(true);
    QTRY_VERIFY(m_scene->server.count("/broken") > before);
}

void tst_resend::stepToAnAnswerSendsNothing_data()
{
    QTest::addColumn<bool>("forward");
    QTest::newRow("back") << false;
    QTest::newRow("forward") << true;
}

void tst_resend::step(bool forward)
{
    if (forward) {
        QVERIFY(m_form->browser()->goBack());
        QTRY_COMPARE(m_form->windowTitle(), u"opener"_s);
        QTRY_VERIFY(!m_form->browser()->isBusy());
        QVERIFY(m_form->browser()->goForward());
        return;
    }
    m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"other"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QVERIFY(m_form->browser()->goBack());
}

/// The engine shows it as it was, and to load it anew is asked about as ever.
void tst_resend::stepToAnAnswerSendsNothing()
{
    QFETCH(const bool, forward);
    m_scene->server.page("/other", "<title>other</title>");
    send(u"post"_s, u"/order"_s);
    step(forward);
    QTRY_COMPARE(m_form->windowTitle(), u"Ordered"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(sent(), 1);
    m_form->browser()->refresh();
    answer(false);
    QCOMPARE(sent(), 1);
}

void tst_resend::stepToAnAnswerThatIsNotKept_data()
{
    stepToAnAnswerSendsNothing_data();
}

/// The page of the error says so, and its button asks.
void tst_resend::stepToAnAnswerThatIsNotKept()
{
    QFETCH(const bool, forward);
    m_scene->server.page("/other", "<title>other</title>");
    m_scene->server.reply(
        "/order", {200, "<title>Ordered</title>", "text/html", {{"Cache-Control", "no-store"}}});
    send(u"post"_s, u"/order"_s);
    step(forward);
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/order"_s));
    QTRY_COMPARE(PopupScene::script(m_form, u"String(!!document.getElementById('tryAgain'))"_s),
                 u"true"_s);
    QVERIFY(PopupScene::script(m_form, u"document.body.innerText"_s)
                .toString()
                .contains("the form must be sent again"_L1));
    QCOMPARE(sent(), 1);
    PopupScene::script(m_form, u"document.getElementById('tryAgain').click(); 1"_s);
    answer(false);
    QCOMPARE(sent(), 1);
    m_form->browser()->refresh();
    answer(true);
    QTRY_COMPARE(sent(), 2);
    QCOMPARE(m_scene->server.requests("/order").last().method, "POST");
    QCOMPARE(m_scene->server.requests("/order").last().body, "a=1");
    QTRY_COMPARE(m_form->windowTitle(), u"Ordered"_s);
}

void tst_resend::scriptThatStepsSendsNothing()
{
    m_scene->server.page("/other",
                         "<title>other</title><script>setTimeout(() => history.back(), "
                         "50)</script>");
    m_scene->server.reply(
        "/order", {200, "<title>Ordered</title>", "text/html", {{"Cache-Control", "no-store"}}});
    send(u"post"_s, u"/order"_s);
    m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(m_scene->server.count("/other"), 1);
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/order"_s));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(sent(), 1);
    QCOMPARE(asked(), 0);
}

void tst_resend::crash()
{
    WebPage *page = PopupScene::control(m_form)->page();
    QSignalSpy crashed(page, &QWebEnginePage::renderProcessTerminated);
    QCOMPARE(::kill(pid_t(page->renderProcessPid()), SIGKILL), 0);
    QTRY_COMPARE(crashed.size(), 1);
    QTRY_COMPARE(page->lifecycleState(), QWebEnginePage::LifecycleState::Discarded);
}

void tst_resend::crashedPageIsLeftWithoutSending()
{
    send(u"post"_s, u"/order"_s);
    crash();
    m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"opener"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(sent(), 1);
    QCOMPARE(asked(), 0);
}

void tst_resend::crashedPageAsksToo()
{
    send(u"post"_s, u"/order"_s);
    crash();
    m_form->browser()->refresh();
    answer(false);
    QCOMPARE(sent(), 1);
    m_form->browser()->refresh();
    answer(true);
    QTRY_VERIFY(sent() > 1);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QTRY_COMPARE(PopupScene::script(m_form, u"document.title"_s).toString(), u"Ordered"_s);
    QCOMPARE(sent(), 2);
}

void tst_resend::nextPageIsFree()
{
    send(u"post"_s, u"/order"_s);
    m_form->browser()->navigate(u"about:blank"_s);
    QTRY_COMPARE(m_form->browser()->locationUrl(), u"about:blank"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    m_form->browser()->refresh();
    QCOMPARE(asked(), 0);
    // A form that brought no page leaves the one shown as it was.
    TestServer::Reply nothing;
    nothing.status = 204;
    m_scene->server.reply("/nothing", nothing);
    m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"opener"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    PopupScene::script(m_form, u"f.method = 'post'; f.action = '/nothing'; f.submit(); 1"_s);
    QTRY_COMPARE(m_scene->server.count("/nothing"), 1);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    m_form->browser()->refresh();
    QCOMPARE(asked(), 0);
}

ORVANE_ENGINE_TEST_MAIN(tst_resend)
#include "tst_resend.moc"
