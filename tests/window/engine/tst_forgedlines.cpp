// Pages that try to speak as the program's own scripts do: to learn their mark, and to have an
// address, a padlock or a command believed.
#include "EngineTest.h"
#include "PageScripts.h"
#include "PopupScene.h"
#include "ScriptError.h"
#include "StatusStrip.h"

#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

using namespace Qt::StringLiterals;

namespace {
/// Runs in a window that a page got hold of before our scripts did: `f` is it, and `take` keeps
/// every text there that a page can come by.
struct Attack {
    const char *name;
    const char *code;
};
const Attack attacks[] = {
    {"listeners as text",
     "const own = f.EventTarget.prototype.addEventListener;"
     "f.EventTarget.prototype.addEventListener = function (...given) {"
     "  take(given[1]); return own.apply(this, given); };"
     "f.addEventListener = f.EventTarget.prototype.addEventListener;"},
    {"events sent",
     "for (const type of ['dispatchEvent', 'addEventListener']) {"
     "  const own = f.EventTarget.prototype[type];"
     "  f.EventTarget.prototype[type] = function (...given) {"
     "    take(new f.Error().stack); given.forEach(take); return own.apply(this, given); }; }"
     "const Made = f.CustomEvent;"
     "f.CustomEvent = function (...given) { given.forEach(take); return new Made(...given); };"
     "f.visualViewport.addEventListener('orvane-column', (event) => take(event.detail));"},
    {"console in its place",
     "const heard = (...given) => given.forEach(take);"
     "for (const name of Object.keys(f.console)) f.console[name] = heard;"
     "f.console = new Proxy({}, {get: () => heard});"},
    {"functions taken apart",
     "for (const name of ['bind', 'call', 'apply', 'toString']) {"
     "  const own = f.Function.prototype[name];"
     "  f.Function.prototype[name] = function (...given) {"
     "    take(String(own)); take(this); return Reflect.apply(own, this, given); }; }"},
    {"texts and lists taken apart",
     "for (const [owner, names] of [[f.String.prototype, ['replace', 'concat', 'toString']],"
     "    [f.Array.prototype, ['join', 'includes', 'toString', 'push']], [f.JSON, ['stringify']],"
     "    [f.Object, ['keys', 'defineProperty']]]) {"
     "  for (const name of names) {"
     "    const own = owner[name];"
     "    owner[name] = function (...given) {"
     "      take(this); given.forEach(take); return Reflect.apply(own, this, given); }; } }"
     "f.Array.prototype.toJSON = f.String.prototype.toJSON = function () { take(this); return 1; "
     "};"},
    {"stack traces prepared",
     "f.Error.stackTraceLimit = 100;"
     "f.Error.prepareStackTrace = (error, sites) => { sites.forEach((site) => {"
     "  take(site.getFunction()); take(site.getScriptNameOrSourceURL()); take(String(site)); });"
     "  take(error.message); return ''; };"},
    {"getters on the window",
     "for (const name of ['console', 'CustomEvent', 'visualViewport', 'opener', 'JSON', 'Number',"
     "    'addEventListener', 'dispatchEvent', 'CSSStyleSheet', 'orvane']) {"
     "  const own = f[name];"
     "  Object.defineProperty(f, name, {configurable: true, get() {"
     "    take(new f.Error().stack); take((function () { try { return arguments.callee.caller; }"
     "      catch (error) { return ''; } })()); return own; },"
     "    set(value) { take(value); }}); }"},
    {"properties of all objects",
     "for (const name of ['detail', 'colno', 'get', 'set', 'value', 'isTrusted', 'capture', "
     "'once'])"
     "  Object.defineProperty(f.Object.prototype, name, {configurable: true,"
     "    get() { take(this); return undefined; },"
     "    set(value) { take(this); take(value); }});"},
};

constexpr auto bank = "https://www.bank.example/login"_L1;
}

class tst_forgedlines : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void markStaysUnknown_data();
    void markStaysUnknown();
    void frameOfAnotherSiteIsNotBelieved();
    void knownMarkChangesNoAddress();
    void knownMarkChangesNothingWhileAPageIsOnItsWay();
    void madeUpEventsAreNotTheUsers();
    void scriptsInThePagesWorldHoldNoSecret();
    void columnsAreStillTold();

private:
    void attackEarly(const QByteArray &window, const char *code);
    void verifyUnchanged(const QString &address);
    QString script(const QString &code) { return PopupScene::script(m_form, code).toString(); }

    std::unique_ptr<PopupScene> m_scene;
    BrowserWindow *m_form = nullptr;
};

void tst_forgedlines::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_form = nullptr;
}

void tst_forgedlines::cleanup()
{
    m_scene.reset();
}

/// Nothing of what a page sent is to be seen anywhere.
void tst_forgedlines::verifyUnchanged(const QString &address)
{
    // Whatever was sent before this has arrived with the answer.
    script(u"1"_s);
    QCOMPARE(m_form->browser()->locationUrl(), address);
    QCOMPARE(m_scene->frame.addressText, address);
    QVERIFY(!m_form->statusBar()->secureShown());
    for (const FakeFrame::Address &reached : m_scene->frame.addresses)
        QVERIFY2(!reached.url.contains("bank"_L1), qPrintable(reached.url));
    QVERIFY(!m_scene->frame.addressTexts.join(u' ').contains("bank"_L1));
}

void tst_forgedlines::markStaysUnknown_data()
{
    QTest::addColumn<QByteArray>("window");
    QTest::addColumn<QByteArray>("code");
    const QByteArray frame = "document.body.appendChild(document.createElement('iframe'))"
                             ".contentWindow";
    for (const Attack &attack : attacks) {
        QTest::addRow("frame, %s", attack.name) << frame << QByteArray(attack.code);
        QTest::addRow("popup, %s", attack.name)
            << QByteArray("window.open('')") << QByteArray(attack.code);
    }
}

/// A window without an address of its own is in the hands of the page that made it before our
/// scripts run there; then it makes them work, and tells what it heard.
void tst_forgedlines::markStaysUnknown()
{
    QFETCH(const QByteArray, window);
    QFETCH(const QByteArray, code);
    m_form = m_scene->openPage(
        "<script>const taken = []; const take = (value) => {"
        "  try { taken.push(typeof value === 'object' ? Object.prototype.toString.call(value) + "
        "    Object.getOwnPropertyNames(value ?? {}).join() : String(value)); } catch { } };"
        "const f = "
        + window + ";" + code
        + "f.setTimeout('throw new Error(\"one\")');"
          "f.setTimeout('moveTo(1, 2); undefinedName.x; ', 1);"
          "f.setTimeout('focus(); document.body.innerHTML = \"<input id=i>\"; i.focus()', 2);"
          "f.setTimeout('console.debug(1); window.over = true', 5);</script>");
    QTRY_COMPARE(script(u"String(!!f.over)"_s), u"true"_s);
    const QString taken = script(u"taken.join('\\n')"_s);
    QVERIFY2(!taken.contains(PageScripts::mark()), qPrintable(taken));
    QVERIFY(!taken.contains(PageScripts::mark().mid(1, 8)));
    m_scene->frame.area->setActiveSubWindow(m_form);
    QTRY_COMPARE(m_scene->frame.addressText, m_scene->server.url(u"/opener"_s));
    // Every text with the form of a mark is tried all the same.
    script(u"for (const mark of [...taken.join().matchAll(/@[0-9a-f]{32}@/g), '', '@@'])"
           u"  console.debug(mark + JSON.stringify(['start', true, '%1'])); 1"_s.arg(bank));
    verifyUnchanged(m_scene->server.url(u"/opener"_s));
}

void tst_forgedlines::frameOfAnotherSiteIsNotBelieved()
{
    m_scene->server.page("/advert",
                         "<script>const f = document.documentElement.appendChild("
                         "document.createElement('iframe')).contentWindow; let mark = '';"
                         "const own = f.EventTarget.prototype.addEventListener;"
                         "f.EventTarget.prototype.addEventListener = function (type, listener) {"
                         "  mark = mark || /@[0-9a-f]{32}@/.exec(String(listener))?.[0];"
                         "  return own.apply(this, arguments); };"
                         "setTimeout(() => {"
                         "  const line = '[\"start\",true,\"https://www.bank.example/login\"]';"
                         "  f.console.debug(mark + line); console.debug(mark + line);"
                         "  parent.postMessage(String(mark), '*'); }, 50);</script>");
    const QByteArray advert = m_scene->server.url(u"/advert"_s, u"localhost"_s).toUtf8();
    m_form = m_scene->openPage("<script>onmessage = (event) => window.found = event.data;</script>"
                               "<iframe src='"
                               + advert + "'></iframe>");
    QTRY_VERIFY(!script(u"String(window.found ?? '')"_s).isEmpty());
    QVERIFY(!script(u"window.found"_s).contains(PageScripts::mark()));
    verifyUnchanged(m_scene->server.url(u"/opener"_s));
}

/// Which page is shown, and how secure it is, is the engine's word even if the mark were known.
void tst_forgedlines::knownMarkChangesNoAddress()
{
    m_form = m_scene->openPage("<iframe srcdoc='x'></iframe>");
    const QString line = u"console.debug('%1' + JSON.stringify(['%2', true, '%3'])); 1"_s;
    for (const QString &what : {u"start"_s, u"load"_s, u"retry"_s, u"start"_s}) {
        script(line.arg(PageScripts::mark(), what, bank));
        verifyUnchanged(m_scene->server.url(u"/opener"_s));
    }
    QCOMPARE(m_scene->server.count("/opener"), 1);
}

void tst_forgedlines::knownMarkChangesNothingWhileAPageIsOnItsWay()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_scene->server.reply("/hang", silent);
    m_form = m_scene->openPage("x");
    const QString address = m_scene->server.url(u"/opener"_s);
    script(u"location = '/hang'; 1"_s);
    QTRY_COMPARE(m_scene->server.count("/hang"), 1);
    for (const QString &place : {QString(bank), m_scene->server.url(u"/hang"_s), u"about:blank"_s,
                                 u"chrome-error://chromewebdata/"_s}) {
        script(u"console.debug('%1' + JSON.stringify(['start', true, '%2'])); 1"_s.arg(
            PageScripts::mark(), place));
        verifyUnchanged(address);
    }
    m_form->browser()->stop();
    QTRY_VERIFY(!m_form->browser()->isBusy());
    verifyUnchanged(address);
}

void tst_forgedlines::madeUpEventsAreNotTheUsers()
{
    m_form = m_scene->openPage("<input id=i><div id=d contenteditable>x</div>");
    const WebPage *page = PopupScene::control(m_form)->page();
    QVERIFY(!page->hasEditableFocus());
    script(u"d.dispatchEvent(new FocusEvent('focusin', {bubbles: true, composed: true}));"
           u"window.dispatchEvent(new Event('focus')); 1"_s);
    verifyUnchanged(m_scene->server.url(u"/opener"_s));
    QVERIFY(!page->hasEditableFocus());
    QVERIFY(!page->hasRichFocus());
}

void tst_forgedlines::scriptsInThePagesWorldHoldNoSecret()
{
    m_form = m_scene->openPage("x");
    const QList<QWebEngineScript> scripts =
        PopupScene::control(m_form)->page()->profile()->scripts()->toList();
    int ofThePages = 0;
    for (const QWebEngineScript &each : scripts) {
        if (each.worldId() != QWebEngineScript::MainWorld)
            continue;
        ++ofThePages;
        QVERIFY2(!each.sourceCode().contains(PageScripts::mark()), qPrintable(each.name()));
        QVERIFY2(!each.sourceCode().contains("MARK"_L1), qPrintable(each.name()));
    }
    QVERIFY(ofThePages > 0);
}

void tst_forgedlines::columnsAreStillTold()
{
    m_form = m_scene->openPage("x");
    QList<ScriptError> errors;
    connect(PopupScene::control(m_form)->page(), &WebPage::scriptFailed, this,
            [&errors](const ScriptError &error) { errors.append(error); });
    script(u"visualViewport.dispatchEvent(new CustomEvent('orvane-column', {detail: 'x'}));"
           u"visualViewport.dispatchEvent(new CustomEvent('orvane-column', {detail: {a: 1}}));"
           u"visualViewport.dispatchEvent(new CustomEvent('orvane-place', {detail: {a: 1}}));"
           u"setTimeout('   nothingOfThatName.x'); 1"_s);
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(errors.first().column, 4);
}

ORVANE_ENGINE_TEST_MAIN(tst_forgedlines)
#include "tst_forgedlines.moc"
