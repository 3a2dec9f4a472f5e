#include <QTest>
#include <QTimer>
#include <QWebEngineScript>
#include <QWebEngineView>

#include "CrashNotice.h"
#include "EngineTest.h"
#include "Inspector.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "PopupScene.h"

using namespace Qt::StringLiterals;

/// Pages that do not answer any more, and how their user gets rid of them.
class tst_silentpages : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void userEndsIt();
    void userWaits();
    void pageThatGoesOnTakesTheStripAway();
    void pageThatIsNotHeardIsReportedAllTheSame();
    void goingElsewhereEndsIt_data();
    void goingElsewhereEndsIt();
    void goingElsewhereBeforeIsRemembered_data();
    void goingElsewhereBeforeIsRemembered();
    void hangsAsItIsLeft();
    void hangsAsItsWindowCloses();
    void closingItsWindow_data();
    void closingItsWindow();
    void allWindowsOfTheProcess();
    void pagesBesideOneInTheDebugger();
    void whatIsNotSilence_data();
    void whatIsNotSilence();

private:
    static constexpr int patience = PopupScene::patience;
    static void run(BrowserWindow *form, const QString &code)
    {
        PopupScene::control(form)->page()->runJavaScript("setTimeout(() => { "_L1 + code
                                                         + " }, 0); 1"_L1);
    }
    void hang(const QString &before = {}) { run(m_form, before + u"; for (;;);"_s); }
    PageQuestionBox *strip() const { return PageAsks::shownIn(m_form); }
    static bool isEnded(const BrowserWindow *form)
    {
        const auto *notice = form->findChild<CrashNotice *>();
        return notice && notice->isVisible();
    }
    static bool isStrip(const PageQuestionBox *box)
    {
        return PageAsks::titleOf(box) == "This page is not answering."_L1;
    }
    QString title() const { return m_form->windowTitle(); }
    /// A window that the page has opened, with a page that the same process runs.
    BrowserWindow *openMate();
    static bool answers(const BrowserWindow *form)
    {
        const auto hasCome = std::make_shared<bool>(false);
        PopupScene::control(form)->page()->runJavaScript(
            u"1"_s, QWebEngineScript::ApplicationWorld,
            [hasCome](const QVariant &) { *hasCome = true; });
        return QTest::qWaitFor([hasCome] { return *hasCome; }, 2000);
    }

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

void tst_silentpages::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/b", "<title>b</title>");
    m_form = m_scene->openPage("<input id=i>", true);
    QVERIFY(QTest::qWaitForWindowActive(m_scene->frame.window()));
}

void tst_silentpages::cleanup()
{
    m_scene.reset();
}

void tst_silentpages::userEndsIt()
{
    hang();
    QTRY_VERIFY_WITH_TIMEOUT(strip(), patience);
    QVERIFY(isStrip(strip()));
    QVERIFY(PageAsks::askerOf(strip()).contains(u"127.0.0.1"_s));
    QVERIFY(!PageAsks::textOf(strip()).contains(u'\n'));
    QVERIFY(!PageAsks::noMore(strip()));
    QCOMPARE(PageAsks::yes(strip())->text(), u"End Page"_s);
    PageAsks::press(PageAsks::yes(strip()));
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(m_form), patience);
    QVERIFY(!strip());
    m_form->browser()->refresh();
    QTRY_COMPARE_WITH_TIMEOUT(PopupScene::script(m_form, u"document.title"_s).toString(),
                              u"opener"_s, patience);
    QVERIFY(!isEnded(m_form));
}

void tst_silentpages::userWaits()
{
    hang();
    QTRY_VERIFY_WITH_TIMEOUT(strip(), patience);
    QCOMPARE(PageAsks::no(strip())->text(), u"Wait"_s);
    PageAsks::press(PageAsks::no(strip()));
    QTRY_VERIFY(!strip());
    QVERIFY(!isEnded(m_form));
    // It is known all the same.
    m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"b"_s, patience);
}

void tst_silentpages::pageThatGoesOnTakesTheStripAway()
{
    run(m_form,
        u"const end = Date.now() + 15000; while (Date.now() < end); document.title = 'on'"_s);
    QTRY_VERIFY_WITH_TIMEOUT(strip(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!strip(), patience);
    QCOMPARE(PopupScene::script(m_form, u"document.title"_s).toString(), u"on"_s);
}

void tst_silentpages::pageThatIsNotHeardIsReportedAllTheSame()
{
    const WhenAsked asked(m_form, [](PageQuestionBox *box) {
        if (QCheckBox *noMore = PageAsks::noMore(box)) {
            noMore->click();
            PageAsks::press(PageAsks::yes(box));
        } else if (!isStrip(box)) {
            PageAsks::press(PageAsks::yes(box));
        }
    });
    run(m_form, u"alert(1); alert(2); setTimeout(() => { for (;;); }, 0)"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_form->questions()->isSilenced(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(strip(), patience);
    QVERIFY(isStrip(strip()));
}

void tst_silentpages::goingElsewhereEndsIt_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("address") << u"address"_s;
    QTest::newRow("same page") << u"reload"_s;
    QTest::newRow("back") << u"back"_s;
}

void tst_silentpages::goingElsewhereEndsIt()
{
    QFETCH(QString, way);
    m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"b"_s, patience);
    PopupScene::waitUntilLoaded(m_form);
    hang(u"onbeforeunload = e => { e.preventDefault(); return 'x' }"_s);
    QTRY_VERIFY_WITH_TIMEOUT(strip(), patience);
    m_scene->server.page("/b", "<title>again</title>");
    if (way == "address"_L1)
        m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    else if (way == "reload"_L1)
        m_form->browser()->refresh();
    else
        QVERIFY(m_form->browser()->goBack());
    QTRY_COMPARE_WITH_TIMEOUT(title(), way == "reload"_L1 ? u"again"_s : u"opener"_s, patience);
    QVERIFY(!strip());
    QVERIFY(!isEnded(m_form));
    PopupScene::script(m_form, u"1"_s);
}

void tst_silentpages::goingElsewhereBeforeIsRemembered_data()
{
    goingElsewhereEndsIt_data();
}

void tst_silentpages::goingElsewhereBeforeIsRemembered()
{
    QFETCH(QString, way);
    m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"b"_s, patience);
    PopupScene::waitUntilLoaded(m_form);
    m_scene->server.page("/b", "<title>again</title>");
    hang();
    if (way == "address"_L1)
        m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    else if (way == "reload"_L1)
        m_form->browser()->refresh();
    else
        QVERIFY(m_form->browser()->goBack());
    QTRY_COMPARE_WITH_TIMEOUT(title(), way == "reload"_L1 ? u"again"_s : u"opener"_s, patience);
    QVERIFY(!strip());
    PopupScene::script(m_form, u"1"_s);
}

void tst_silentpages::hangsAsItIsLeft()
{
    PopupScene::script(m_form, u"onbeforeunload = () => { for (;;); }; 1"_s);
    m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    QTRY_COMPARE_WITH_TIMEOUT(title(), u"b"_s, patience);
    PopupScene::script(m_form, u"1"_s);
    QVERIFY(!strip());
}

void tst_silentpages::hangsAsItsWindowCloses()
{
    PopupScene::script(m_form, u"onbeforeunload = () => { for (;;); }; 1"_s);
    m_form->close();
    QTRY_VERIFY_WITH_TIMEOUT(!m_form, patience);
}

void tst_silentpages::closingItsWindow_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("plain") << QString();
    QTest::newRow("asks to stay") << u"onbeforeunload = e => { e.preventDefault(); return 'x' }"_s;
}

void tst_silentpages::closingItsWindow()
{
    QFETCH(QString, code);
    hang(code);
    QTRY_VERIFY_WITH_TIMEOUT(strip(), patience);
    m_form->close();
    QTRY_VERIFY_WITH_TIMEOUT(!m_form, patience);
}

BrowserWindow *tst_silentpages::openMate()
{
    m_scene->server.page("/mate", "<title>mate &amp; friend</title>");
    const auto before = browserForms().size();
    run(m_form, u"open('/mate')"_s);
    if (!QTest::qWaitFor([before] { return browserForms().size() > before; }, patience))
        return nullptr;
    BrowserWindow *mate = browserForms().constLast();
    const auto isThere = [mate] { return mate->windowTitle() == u"mate & friend"_s; };
    return QTest::qWaitFor(isThere, patience) ? mate : nullptr;
}

void tst_silentpages::allWindowsOfTheProcess()
{
    BrowserWindow *alone = m_scene->frame.open(m_scene->server.url(u"/b"_s));
    PopupScene::waitUntilLoaded(alone);
    m_scene->frame.area->setActiveSubWindow(m_form);
    BrowserWindow *mate = openMate();
    QVERIFY(mate);
    const qint64 process = PopupScene::control(m_form)->page()->renderProcessPid();
    QCOMPARE(PopupScene::control(mate)->page()->renderProcessPid(), process);
    m_scene->frame.area->setActiveSubWindow(m_form);
    hang();
    QTRY_VERIFY_WITH_TIMEOUT(strip(), patience);
    QVERIFY2(PageAsks::textOf(strip()).contains(u"mate & friend"_s),
             qPrintable(PageAsks::textOf(strip())));
    m_scene->frame.area->setActiveSubWindow(mate);
    QTRY_VERIFY(PageAsks::shownIn(mate));
    QVERIFY(PageAsks::textOf(PageAsks::shownIn(mate)).contains(u"opener"_s));
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(mate)));
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(mate), patience);
    m_scene->frame.area->setActiveSubWindow(m_form);
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(m_form), patience);
    QVERIFY(!strip());
    QCOMPARE(PopupScene::script(alone, u"document.title"_s).toString(), u"b"_s);
}

/// The debugger holds all that the process runs.
void tst_silentpages::pagesBesideOneInTheDebugger()
{
    BrowserWindow *mate = openMate();
    QVERIFY(mate);
    auto tools = std::make_unique<Inspector>(*PopupScene::control(m_form)->page(), nullptr);
    tools->resize(600, 400);
    tools->show();
    const auto isHeld = [this] {
        run(m_form, u"debugger"_s);
        return !answers(m_form);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isHeld(), patience);
    QVERIFY(!answers(mate));
    m_scene->frame.area->setActiveSubWindow(mate);
    const WhenAsked asked(mate, [](PageQuestionBox *) {});
    bool isOver = false;
    QTimer::singleShot(12000, this, [&isOver] { isOver = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isOver, patience);
    QCOMPARE(asked.count(), 0);
    tools.reset();
    QTRY_VERIFY_WITH_TIMEOUT(answers(mate), patience);
    QVERIFY(!PageAsks::shownIn(mate) && !strip());
}

void tst_silentpages::whatIsNotSilence_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("nothing") << QString();
    QTest::newRow("waits for its user") << u"alert('')"_s;
    QTest::newRow("waits for its server") << u"location = '/silent'"_s;
    QTest::newRow("may run no script") << u"location = '/mute'"_s;
    QTest::newRow("stops now and then")
        << u"setInterval(() => { const e = Date.now() + 1500; while (Date.now() < e); }, 50)"_s;
}

void tst_silentpages::whatIsNotSilence()
{
    QFETCH(QString, code);
    TestServer::Reply silent;
    silent.silent = true;
    m_scene->server.reply("/silent", silent);
    TestServer::Reply mute;
    mute.body = "<title>mute</title><script>document.title = 'not mute'</script>";
    mute.headers = {{"Content-Security-Policy", "sandbox; script-src 'none'"}};
    m_scene->server.reply("/mute", mute);
    bool isSilent = false;
    const WhenAsked asked(m_form,
                          [&](PageQuestionBox *box) { isSilent = isSilent || isStrip(box); });
    // What a script waits for is answered while all pages stand still.
    bool isOver = false;
    QTimer::singleShot(12000, this, [&] {
        isOver = true;
        if (strip())
            PageAsks::yes(strip())->click();
    });
    run(m_form, code);
    QTRY_VERIFY_WITH_TIMEOUT(isOver, patience);
    QTRY_VERIFY(!strip());
    QVERIFY(!isSilent);
}

ORVANE_ENGINE_TEST_MAIN(tst_silentpages)
#include "tst_silentpages.moc"
