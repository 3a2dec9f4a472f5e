// A page that is given up comes back as it was: its history, place, text, zoom and sound.
#include "ControlScene.h"
#include "EngineTest.h"
#include "WebView.h"

#include <QDataStream>
#include <QSignalSpy>
#include <QWebEngineHistory>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {
constexpr auto longPage = "<title>%1</title><body style='height:9000px'>"
                          "<textarea id=t></textarea><input id=p type=password>";

/// The engine tells itself of what is entered and scrolled within a second.
constexpr int toldWithinMs = 15'000;
}

class tst_pagereturn : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void comesBackAsItWas();
    void historyGoesBothWays();
    void waitingControlHasWhatItWasGiven();
    void scrollAloneIsEnough();
    void userScrollsInstead();
    void answerToAFormIsNotSent();
    void formInTheHistoryIsNotSent();
    void hostileHistoryIsRefused_data();
    void hostileHistoryIsRefused();
    void rubbishIsAPlainLoad();
    void killedInBetween();
    void killedWhileItComes();
    void anotherPageIsNotScrolled();
    void skippedPagesStaySkipped();
    void typingIsKnown();

private:
    ControlScene &scene() { return *m_scene; }
    QtWebBrowser *browser() { return m_scene->browser; }
    QString url(const QString &path) const { return m_scene->server.url(path); }
    void giveUp();
    void bringBack();
    void kill();
    QStringList steps() const;

    std::unique_ptr<ControlScene> m_scene;
};

void tst_pagereturn::init()
{
    m_scene = std::make_unique<ControlScene>();
    QVERIFY(QTest::qWaitForWindowActive(&m_scene->window));
    for (const char *name : {"one", "two", "three"})
        m_scene->server.page(QByteArray("/") + name,
                             QString::fromLatin1(longPage).arg(QLatin1String(name)).toUtf8());
}

void tst_pagereturn::giveUp()
{
    const QString address = browser()->locationUrl();
    const PageState state = browser()->pageState(StateDepth::All);
    browser()->navigateLater(address, state);
    QVERIFY(browser()->isWaiting());
    QVERIFY(!browser()->page());
    QCOMPARE(browser()->locationUrl(), address);
}

void tst_pagereturn::bringBack()
{
    const QString address = browser()->locationUrl();
    browser()->navigateNow();
    QVERIFY(!browser()->isWaiting());
    QTRY_VERIFY(browser()->hasDocument() && !browser()->isBusy());
    QCOMPARE(browser()->locationUrl(), address);
}

void tst_pagereturn::kill()
{
    WebPage *page = browser()->page();
    QSignalSpy crashed(page, &QWebEnginePage::renderProcessTerminated);
    QCOMPARE(::kill(pid_t(page->renderProcessPid()), SIGKILL), 0);
    QTRY_COMPARE(crashed.size(), 1);
}

QStringList tst_pagereturn::steps() const
{
    QStringList result;
    for (const HistoryStep &step : m_scene->browser->historySteps())
        result.append(QString::number(step.offset) + u' ' + step.title + u' '
                      + QUrl(step.url).path());
    return result;
}

void tst_pagereturn::comesBackAsItWas()
{
    scene().open(url(u"/one"_s));
    browser()->page()->setZoomFactor(1.5);
    browser()->page()->setAudioMuted(true);
    scene().script(u"t.value='half a letter'; scrollTo(0, 1234); 1"_s);
    QTRY_COMPARE(browser()->pageState(StateDepth::View).scroll, QPoint(0, 1234));
    // Until the engine has been told of the text.
    QTRY_VERIFY_WITH_TIMEOUT(qUncompress(browser()->pageState(StateDepth::All).history)
                                 .contains(QByteArray("h\0a\0l\0f\0 \0a\0", 12)),
                             toldWithinMs);
    giveUp();
    bringBack();
    QCOMPARE(browser()->page()->zoomFactor(), 1.5);
    QVERIFY(browser()->page()->isAudioMuted());
    QCOMPARE(scene().script(u"t.value"_s), u"half a letter"_s);
    QTRY_VERIFY(qAbs(scene().script(u"String(scrollY)"_s).toDouble() - 1234) <= 2);
    QTRY_COMPARE(scene().events.titles.last(), u"one"_s);
    QTRY_VERIFY(qAbs(browser()->pageState(StateDepth::View).scroll.y() - 1234) <= 2);
}

void tst_pagereturn::historyGoesBothWays()
{
    for (const char *path : {"/one", "/two", "/three"})
        scene().open(url(QLatin1String(path)));
    QVERIFY(browser()->goBack());
    scene().waitFor(url(u"/two"_s));
    const QStringList before = steps();
    QCOMPARE(before, QStringList({u"-1 one /one"_s, u"1 three /three"_s}));
    giveUp();
    QVERIFY(browser()->historySteps().isEmpty());
    bringBack();
    QCOMPARE(steps(), before);
    QVERIFY(browser()->goForward());
    scene().waitFor(url(u"/three"_s));
    QVERIFY(browser()->goBack());
    scene().waitFor(url(u"/two"_s));
    QVERIFY(browser()->goBack());
    scene().waitFor(url(u"/one"_s));
    QVERIFY(!browser()->goBack());
}

void tst_pagereturn::waitingControlHasWhatItWasGiven()
{
    PageState given;
    given.scroll = QPoint(3, 400);
    given.zoom = 0.5;
    given.isMuted = true;
    given.hasTyped = true;
    given.history = "kept as it is";
    browser()->navigateLater(url(u"/one"_s), given);
    const PageState has = browser()->pageState(StateDepth::All);
    QCOMPARE(has.scroll, given.scroll);
    QCOMPARE(has.zoom, given.zoom);
    QVERIFY(has.isMuted && has.hasTyped);
    QCOMPARE(has.history, given.history);
    // Nothing is known any more of what was to come.
    scene().open(url(u"/two"_s));
    QCOMPARE(browser()->pageState(StateDepth::View).scroll, QPoint());
    QCOMPARE(browser()->page()->zoomFactor(), 1.0);
}

void tst_pagereturn::scrollAloneIsEnough()
{
    // Grows only after it has come.
    scene().server.page("/late",
                        "<title>late</title><script>addEventListener('load', () => "
                        "setTimeout(() => document.body.style.height = '9000px', 200))"
                        "</script><body>");
    PageState state;
    state.scroll = QPoint(0, 2345);
    state.zoom = 1.25;
    state.isMuted = true;
    browser()->navigateLater(url(u"/late"_s), state);
    bringBack();
    QTRY_VERIFY(qAbs(scene().script(u"String(scrollY)"_s).toDouble() - 2345) <= 2);
    QCOMPARE(browser()->page()->zoomFactor(), 1.25);
    QVERIFY(browser()->page()->isAudioMuted());
    QCOMPARE(browser()->page()->history()->count(), 1);
}

void tst_pagereturn::userScrollsInstead()
{
    scene().server.page("/never", "<title>never</title><body style='height:9000px'>");
    PageState state;
    state.scroll = QPoint(0, 20'000);
    browser()->navigateLater(url(u"/never"_s), state);
    bringBack();
    QTRY_VERIFY(scene().script(u"String(scrollY)"_s).toDouble() > 1000);
    QWidget *view = browser()->widget()->findChild<WebView *>()->focusProxy();
    browser()->setFocus();
    QTRY_VERIFY(
        (QTest::keyClick(view, Qt::Key_Home), scene().script(u"String(scrollY)"_s) == "0"_L1));
    // It would be tried several times more meanwhile.
    scene().script(u"window.n = 0; setInterval(() => n += 1, 50); 1"_s);
    QTRY_VERIFY(scene().script(u"String(n)"_s).toInt() > 6);
    QCOMPARE(scene().script(u"String(scrollY)"_s), u"0"_s);
}

void tst_pagereturn::answerToAFormIsNotSent()
{
    scene().server.page("/form",
                        "<form id=f method=post action=/order><input name=a value=1></form>");
    scene().server.page("/order", "<title>ordered</title>");
    scene().open(url(u"/form"_s));
    scene().script(u"f.submit(); 1"_s);
    scene().waitFor(url(u"/order"_s));
    QCOMPARE(scene().server.count("/order"), 1);
    giveUp();
    browser()->navigateNow();
    QTRY_VERIFY(!browser()->isBusy() && browser()->hasDocument());
    QCOMPARE(scene().server.count("/order"), 1);
    QCOMPARE(steps(), QStringList({u"-1  /form"_s}));
}

void tst_pagereturn::formInTheHistoryIsNotSent()
{
    scene().server.page("/form",
                        "<form id=f method=post action=/order><input name=a value=1></form>");
    scene().server.reply(
        "/order", {200, "<title>ordered</title>", "text/html", {{"Cache-Control", "no-store"}}});
    scene().open(url(u"/form"_s));
    scene().script(u"f.submit(); 1"_s);
    scene().waitFor(url(u"/order"_s));
    scene().open(url(u"/one"_s));
    giveUp();
    bringBack();
    QVERIFY(browser()->goBack());
    QTRY_COMPARE(browser()->locationUrl(), url(u"/order"_s));
    QTRY_VERIFY(!browser()->isBusy());
    QCOMPARE(scene().server.count("/order"), 1);
    browser()->goBack();
    scene().waitFor(url(u"/form"_s));
    QCOMPARE(scene().server.count("/order"), 1);
}

void tst_pagereturn::hostileHistoryIsRefused_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("an inner page") << QByteArray("chrome://gpu/");
    QTest::newRow("one that ends the program")
        << QByteArray("chrome://inducebrowsercrashforrealz/");
    QTest::newRow("another program's") << QByteArray("tel:1234567890123");
    QTest::newRow("a script") << QByteArray("javascript:document.title='x'");
}

/// `PageState` comes from this program alone; what the engine reads it still asks for.
void tst_pagereturn::hostileHistoryIsRefused()
{
    QFETCH(const QByteArray, address);
    // An address of the same length, to be exchanged where the entry names it.
    const QByteArray path(qMax<qsizetype>(0, address.size() - url(u"/"_s).size()), 'x');
    const QString replaced = url(u'/' + QString::fromLatin1(path));
    scene().server.page('/' + path, "<title>x</title>");
    scene().open(replaced);
    PageState state = browser()->pageState(StateDepth::All);
    QByteArray bytes = qUncompress(state.history);
    QByteArray hostile = address;
    while (hostile.size() < replaced.size())
        hostile.append(' ');
    bytes.replace(replaced.toLatin1(), hostile.left(replaced.size()));
    state.history = qCompress(bytes);
    browser()->navigateLater(url(u"/one"_s), state);
    browser()->navigateNow();
    QTRY_VERIFY(!browser()->isBusy());
    QVERIFY(!browser()->locationUrl().startsWith("chrome:"_L1));
    scene().open(url(u"/two"_s));
    browser()->goBack();
    QTRY_VERIFY(!browser()->isBusy());
    scene().open(url(u"/three"_s));
}

void tst_pagereturn::rubbishIsAPlainLoad()
{
    PageState state;
    for (const QByteArray &bytes :
         {QByteArray("rubbish"), qCompress("rubbish"), qCompress(QByteArray(5000, '\xff'))}) {
        state.history = bytes;
        browser()->navigateLater(url(u"/one"_s), state);
        bringBack();
        QCOMPARE(scene().script(u"document.title"_s), u"one"_s);
    }
}

void tst_pagereturn::killedInBetween()
{
    scene().open(url(u"/one"_s));
    scene().open(url(u"/two"_s));
    kill();
    giveUp();
    bringBack();
    QCOMPARE(scene().script(u"document.title"_s), u"two"_s);
    QVERIFY(browser()->goBack());
    scene().waitFor(url(u"/one"_s));
}

void tst_pagereturn::killedWhileItComes()
{
    // Not out of the cache, where nothing could be held.
    const QByteArray page = QString::fromLatin1(longPage).arg("two"_L1).toUtf8();
    scene().server.reply("/two", {200, page, "text/html", {{"Cache-Control", "no-store"}}});
    scene().open(url(u"/one"_s));
    scene().open(url(u"/two"_s));
    scene().script(u"scrollTo(0, 777); 1"_s);
    QTRY_COMPARE(browser()->pageState(StateDepth::View).scroll, QPoint(0, 777));
    scene().server.hold("/two");
    giveUp();
    browser()->navigateNow();
    QTRY_COMPARE(scene().server.count("/two"), 2);
    kill();
    QCOMPARE(browser()->pageState(StateDepth::View).scroll, QPoint(0, 777));
    scene().server.release();
    browser()->refresh();
    scene().waitFor(url(u"/two"_s));
    QTRY_COMPARE(scene().script(u"document.title"_s), u"two"_s);
    QTRY_VERIFY(qAbs(scene().script(u"String(scrollY)"_s).toDouble() - 777) <= 2);
}

void tst_pagereturn::anotherPageIsNotScrolled()
{
    scene().server.redirect("/moved", "/three");
    PageState state;
    state.scroll = QPoint(0, 500);
    browser()->navigateLater(url(u"/moved"_s), state);
    browser()->navigateNow();
    scene().waitFor(url(u"/three"_s));
    QCOMPARE(scene().script(u"String(scrollY)"_s), u"0"_s);
    QCOMPARE(browser()->pageState(StateDepth::View).scroll, QPoint());
}

void tst_pagereturn::skippedPagesStaySkipped()
{
    scene().open(url(u"/one"_s));
    scene().events.flagsToSet = NavFlags::NoHistory;
    scene().script(u"location.href = '/two'; 1"_s);
    scene().waitFor(url(u"/two"_s));
    scene().events.flagsToSet = 0;
    scene().open(url(u"/three"_s));
    QCOMPARE(steps(), QStringList({u"-2 one /one"_s}));
    giveUp();
    bringBack();
    QCOMPARE(steps(), QStringList({u"-2 one /one"_s}));
}

void tst_pagereturn::typingIsKnown()
{
    scene().open(url(u"/one"_s));
    scene().script(
        u"t.value='a script did it'; t.dispatchEvent(new Event('input')); t.focus(); 1"_s);
    QVERIFY(!browser()->pageState(StateDepth::View).hasTyped);
    QWidget *view = browser()->widget()->findChild<WebView *>()->focusProxy();
    browser()->setFocus();
    QTRY_VERIFY(browser()->page()->hasEditableFocus());
    QTRY_VERIFY(
        (QTest::keyClick(view, Qt::Key_X), browser()->pageState(StateDepth::View).hasTyped));
    giveUp();
    QVERIFY(browser()->pageState(StateDepth::View).hasTyped);
    bringBack();
    QTRY_VERIFY(browser()->pageState(StateDepth::View).hasTyped);
    scene().open(url(u"/two"_s));
    QVERIFY(!browser()->pageState(StateDepth::View).hasTyped);
}

ORVANE_ENGINE_TEST_MAIN(tst_pagereturn)
#include "tst_pagereturn.moc"
