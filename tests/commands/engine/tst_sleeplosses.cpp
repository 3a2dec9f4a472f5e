// Nothing that a user entered, or that is nowhere else, goes with a page that falls asleep.
#include <QMenu>
#include <QPushButton>
#include <csignal>

#include "../EngineSession.h"
#include "ClosedWindows.h"
#include "EngineTest.h"
#include "PageActivity.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "SleepPicture.h"
#include "SleepRules.h"
#include "WebView.h"

using namespace Qt::StringLiterals;

class tst_SleepLosses : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { finish(); }

    void textTypedAnywhereKeepsAwake_data();
    void textTypedAnywhereKeepsAwake();
    void typedTextOutlastsAStateOfTheHistory();
    void madeByPageKeepsAwake_data();
    void madeByPageKeepsAwake();
    void formInTheHistoryIsNotSentAgain();
    void byHandAsks_data();
    void byHandAsks();
    void killedAsItWakes();
    void findBarOfASleepingPage();
    void lastWordDoesNotKeepAwake();
    void typedBeforeItIsHeard();

private:
    static WebPage *pageOf(const BrowserWindow *window)
    {
        return static_cast<QtWebBrowser *>(window->browser())->page();
    }
    static QString run(const BrowserWindow *window, const QString &code)
    {
        auto result = std::make_shared<std::optional<QString>>();
        pageOf(window)->runJavaScript(
            code, [result](const QVariant &value) { *result = value.toString(); });
        [&] { QTRY_VERIFY(*result); }();
        return result->value_or(QString());
    }
    QWidget *view() const { return m_session->active()->findChild<WebView *>()->focusProxy(); }
    void activate()
    {
        QTRY_VERIFY((QTest::mouseClick(view(), Qt::LeftButton, {}, QPoint(300, 300)),
                     run(m_session->active(), u"String(navigator.userActivation.hasBeenActive)"_s)
                         == "true"_L1));
    }
    BrowserWindow *window() const { return m_session->active(); }
    /// Of a window's page, with another window in front.
    BrowserWindow *openBehind(const QByteArray &script)
    {
        m_session->server.page("/ends", "<title>ends</title><script>" + script + "</script>");
        go(url(u"/ends"_s));
        BrowserWindow *behind = window();
        m_session->frame->openBrowserWindow(url(u"/one"_s), WindowState::Maximized);
        [&] { QTRY_VERIFY(m_session->shows(url(u"/one"_s)) && !behind->isSeen()); }();
        return behind;
    }
    /// What can be chosen is known when the menu opens.
    void chooseSleep() const
    {
        QAction *item = m_session->item("mnuWindowSleep");
        for (QMenu *menu : m_session->frame->findChildren<QMenu *>()) {
            if (menu->actions().contains(item))
                emit menu->aboutToShow();
        }
        QVERIFY(item->isEnabled());
        item->trigger();
    }
};

void tst_SleepLosses::init()
{
    ClosedWindows::clear();
    begin();
    start();
}

void tst_SleepLosses::textTypedAnywhereKeepsAwake_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::addColumn<QString>("focus");
    QTest::newRow("textarea") << QByteArray("<textarea id=t></textarea>") << u"t.focus()"_s;
    QTest::newRow("editable") << QByteArray("<div id=t contenteditable>x</div>") << u"t.focus()"_s;
    QTest::newRow("shadow") << QByteArray("<div id=t></div><script>window.s=t.attachShadow({mode:"
                                          "'closed'});s.innerHTML='<input>'</script>")
                            << u"s.firstChild.focus()"_s;
    QTest::newRow("select") << QByteArray("<select id=t><option>a<option>x<option>c</select>")
                            << u"t.focus()"_s;
    QTest::newRow("stopped") << QByteArray(
        "<textarea id=t></textarea><script>addEventListener('input', e => "
        "e.stopImmediatePropagation(), true)</script>")
                             << u"t.focus()"_s;
}

void tst_SleepLosses::textTypedAnywhereKeepsAwake()
{
    QFETCH(const QByteArray, html);
    QFETCH(const QString, focus);
    m_session->server.page("/page", "<title>page</title>" + html);
    go(url(u"/page"_s));
    window()->browser()->setFocus();
    run(window(), focus + u"; 1"_s);
    QTRY_VERIFY(
        (QTest::keyClick(view(), Qt::Key_X), window()->browser()->maySleep() == SleepLimit::Much));
}

void tst_SleepLosses::typedTextOutlastsAStateOfTheHistory()
{
    m_session->server.page("/page", "<title>page</title><textarea id=t></textarea>");
    go(url(u"/page"_s));
    window()->browser()->setFocus();
    run(window(), u"t.focus(); 1"_s);
    QTRY_VERIFY(
        (QTest::keyClick(view(), Qt::Key_X), window()->browser()->maySleep() == SleepLimit::Much));
    run(window(), u"history.pushState({}, '', '/draft'); 1"_s);
    QTRY_COMPARE(window()->browser()->locationUrl(), url(u"/draft"_s));
    QTest::keyClick(view(), Qt::Key_X);
    run(window(), u"1"_s);
    QVERIFY(window()->browser()->maySleep() == SleepLimit::Much);
}

void tst_SleepLosses::madeByPageKeepsAwake_data()
{
    QTest::addColumn<QString>("act");
    QTest::newRow("its own") << u"location.href = made()"_s;
    QTest::newRow("in a window") << u"open(made())"_s;
    QTest::newRow("written into a window")
        << u"const w = open(''); w.document.write('<title>made</title>'); w.document.close()"_s;
}

/// Nothing would make it again once it has gone, whatever became of the page that made it.
void tst_SleepLosses::madeByPageKeepsAwake()
{
    QFETCH(const QString, act);
    m_session->server.page("/page",
                           "<title>page</title><script>const made = () => URL.createObjectURL("
                           "new Blob(['<title>made</title>'], {type: 'text/html'}))</script>");
    go(url(u"/page"_s));
    BrowserWindow *maker = window();
    activate();
    run(maker, act + u"; 1"_s);
    QTRY_COMPARE(window()->windowTitle(), u"made"_s);
    if (window() != maker) {
        maker->close();
        QTRY_COMPARE(m_session->windows(), 1);
    }
    QTRY_VERIFY(!window()->browser()->isBusy());
    QVERIFY(window()->browser()->maySleep() == SleepLimit::Much);
}

void tst_SleepLosses::byHandAsks_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::newRow("typed") << QByteArray();
    QTest::newRow("asks to be left")
        << QByteArray("<script>addEventListener('beforeunload', e => { e.preventDefault(); "
                      "e.returnValue = 'x'; })</script>");
}

/// What no engine brings back, as text in an element that can be edited.
void tst_SleepLosses::byHandAsks()
{
    QFETCH(const QByteArray, html);
    m_session->server.page("/page",
                           "<title>page</title><div id=t contenteditable "
                           "style='height: 900px'></div>"
                               + html);
    go(url(u"/page"_s));
    activate();
    if (html.isEmpty()) {
        run(window(), u"t.focus(); 1"_s);
        int typed = 0;
        QTRY_VERIFY((QTest::keyClick(view(), Qt::Key_X), ++typed,
                     window()->browser()->maySleep() == SleepLimit::Much));
        // Keys are still on their way to the page.
        QTRY_COMPARE(run(window(), u"t.textContent"_s), QString(typed, u'x'));
    }
    const QString text = run(window(), u"'is ' + t.textContent"_s);
    chooseSleep();
    QTRY_COMPARE(PageAsks::countIn(window()), 1);
    QVERIFY(!window()->isAsleep());
    PageAsks::press(PageAsks::no(PageAsks::shownIn(window())));
    QTRY_COMPARE(PageAsks::countIn(window()), 0);
    QVERIFY(!window()->isAsleep());
    QCOMPARE(run(window(), u"'is ' + t.textContent"_s), text);
    chooseSleep();
    QTRY_COMPARE(PageAsks::countIn(window()), 1);
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(window())));
    QTRY_VERIFY(window()->isAsleep());
}

/// A step back to the answer of a form, in a history that came back, orders nothing again.
void tst_SleepLosses::formInTheHistoryIsNotSentAgain()
{
    int posts = 0;
    m_session->server.handle("/order", [&posts](const TestServer::Request &request) {
        posts += request.method == "POST" ? 1 : 0;
        TestServer::Reply reply;
        reply.body = "<title>ordered</title>";
        return reply;
    });
    m_session->server.page("/page",
                           "<title>page</title><form id=f method=post action=/order></form>");
    go(url(u"/page"_s));
    activate();
    run(window(), u"f.submit(); 1"_s);
    QTRY_COMPARE(window()->windowTitle(), u"ordered"_s);
    activate();
    go(url(u"/one"_s));
    QCOMPARE(posts, 1);
    window()->fallAsleep();
    window()->wake();
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QVERIFY(window()->browser()->goBack());
    QTRY_VERIFY(m_session->location() == url(u"/order"_s) && !window()->browser()->isBusy());
    QCOMPARE(posts, 1);
}

void tst_SleepLosses::killedAsItWakes()
{
    m_session->server.page("/page", "<title>page</title>");
    go(url(u"/page"_s));
    window()->fallAsleep();
    m_session->server.hold("/page");
    window()->wake();
    QTRY_VERIFY(pageOf(window()) && pageOf(window())->renderProcessPid() > 0);
    ::kill(pid_t(pageOf(window())->renderProcessPid()), SIGKILL);
    m_session->server.release();
    const auto reload = [this] { return window()->findChild<QPushButton *>(u"cmdReload"_s); };
    QTRY_VERIFY(reload() || m_session->shows(url(u"/page"_s)));
    if (reload())
        reload()->click();
    QTRY_VERIFY(m_session->shows(url(u"/page"_s)) && window()->windowTitle() == "page"_L1);
    QTRY_VERIFY(!window()->findChild<SleepPicture *>());
}

void tst_SleepLosses::findBarOfASleepingPage()
{
    go(url(u"/one"_s));
    m_session->choose("mnuEditFind");
    QPointer<QLineEdit> field = window()->findChild<QLineEdit *>(u"txtFind"_s);
    QVERIFY(field);
    window()->fallAsleep();
    if (field)
        QTest::keyClicks(field, u"two"_s);
    m_session->choose("mnuEditFind");
    window()->wake();
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    m_session->choose("mnuEditFind");
    QTRY_VERIFY(window()->findChild<QLineEdit *>(u"txtFind"_s));
}

/// A page that was told its end must not live on behind that, whatever it did then.
void tst_SleepLosses::lastWordDoesNotKeepAwake()
{
    BrowserWindow *behind = openBehind("addEventListener('pagehide', () => { window.isOver = true; "
                                       "fetch('/bye', {method: 'POST', body: 'x'}); })");
    // What it sends is known by the time that it has answered.
    QVERIFY(behind->browser()->maySleep() == SleepLimit::Nothing);
    SleepRules::ask(*behind, SleepRules::Why::Unseen);
    QTRY_VERIFY(behind->isAsleep() || pageOf(behind)->activity().maySend());
    QTRY_VERIFY(behind->isAsleep());
    behind->wake();
    QTRY_VERIFY(!behind->browser()->isBusy() && behind->browser()->hasDocument());
    QCOMPARE(run(behind, u"String(window.isOver)"_s), u"undefined"_s);
}

/// Who entered something while the page was busy finds it, in a page that was told no end.
void tst_SleepLosses::typedBeforeItIsHeard()
{
    BrowserWindow *behind =
        openBehind("addEventListener('pagehide', () => { window.isOver = true; })");
    pageOf(behind)->runJavaScript(u"for (const end = Date.now() + 300; Date.now() < end;); 1"_s);
    SleepRules::ask(*behind, SleepRules::Why::Unseen);
    pageOf(behind)->noteTyped();
    bool isAnswered = false;
    behind->browser()->askToSleep([] { return false; }, [&](bool) { isAnswered = true; });
    QTRY_VERIFY(isAnswered);
    QVERIFY(!behind->isAsleep());
    QCOMPARE(run(behind, u"String(window.isOver)"_s), u"undefined"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_SleepLosses)
#include "tst_sleeplosses.moc"
