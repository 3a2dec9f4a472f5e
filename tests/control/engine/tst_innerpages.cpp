// The engine's addresses that end the program, and the program's inner files: nothing opens them.
#include "ControlScene.h"
#include "EngineTest.h"

#include <QTemporaryDir>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// A file that the engine brings along; a script that makes QWebChannel a function.
constexpr char inner[] = "qrc:///qtwebchannel/qwebchannel.js";
/// A page of the program's own, which only the user opens.
constexpr char own[] = "orvane:start";
constexpr char guide[] = "orvane:guide/keys";

/// A page that runs `attack`, an async function's body, and puts what it gives into its title;
/// "nothing" when that fails or takes too long.
QByteArray hostilePage(const QByteArray &attack)
{
    QByteArray page = R"(<!doctype html><title>at work</title><body><script>
        const make = (name, attributes) => new Promise(resolve => {
            const element = document.createElement(name);
            element.onload = () => resolve('loaded');
            element.onerror = () => resolve('nothing');
            for (const [key, value] of Object.entries(attributes))
                element.setAttribute(key, value);
            document.body.append(element);
        });
        const work = async () => { %ATTACK% };
        const late = new Promise(resolve => setTimeout(() => resolve('nothing'), 1500));
        Promise.race([late, work()]).catch(() => 'nothing').then(
            result => document.title = 'got: ' + (result || 'nothing'));
        </script>)";
    return page.replace("%ATTACK%", attack).replace("$inner", inner);
}
}

class tst_innerpages : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void typed_data();
    void typed();
    void typedFirst();
    void harmlessPageOpens();
    void pageReachesNoInnerFile_data();
    void pageReachesNoInnerFile();
    void pageGoesToNone_data();
    void pageGoesToNone();
    void windowOfItsOwnGoesToNone_data();
    void windowOfItsOwnGoesToNone();

private:
    std::unique_ptr<ControlScene> m_scene;
};

void tst_innerpages::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_scene->server.page("/a", "<title>Page A</title>a");
}

void tst_innerpages::cleanup()
{
    m_scene.reset();
}

void tst_innerpages::typed_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address :
         {"chrome://inducebrowsercrashforrealz", "CHROME://InduceBrowserCrashForRealz/?x",
          "chrome:inducebrowsercrashforrealz", "about:inducebrowsercrashforrealz",
          "view-source:chrome://inducebrowsercrashforrealz", "chrome://crash", "chrome://kill",
          "chrome://hang", "chrome://gpucrash", "chrome://quit", inner,
          "devtools://devtools/bundled/inspector.html"})
        QTest::addRow("%s", address) << QString::fromLatin1(address);
}

/// The page that is there stays, the status text says why, and the next address opens.
void tst_innerpages::typed()
{
    QFETCH(const QString, address);
    m_scene->open(m_scene->server.url(u"/a"_s));
    m_scene->browser->navigate(address);
    QVERIFY(m_scene->events.statuses.last().startsWith("This address is not opened"_L1));
    QVERIFY(!m_scene->browser->isBusy());
    QCOMPARE(m_scene->browser->locationUrl(), m_scene->server.url(u"/a"_s));
    QCOMPARE(m_scene->script(u"document.title"_s), u"Page A"_s);
    m_scene->server.page("/b", "b");
    m_scene->open(m_scene->server.url(u"/b"_s));
}

/// In a window that waited at the address, as those of a profile do.
void tst_innerpages::typedFirst()
{
    m_scene->browser->navigateLater(u"chrome://inducebrowsercrashforrealz"_s);
    m_scene->browser->navigateNow();
    QVERIFY(m_scene->events.statuses.last().startsWith("This address is not opened"_L1));
    QCOMPARE(m_scene->events.titles.last(), u"chrome://inducebrowsercrashforrealz"_s);
    QVERIFY(!m_scene->browser->hasDocument());
    m_scene->open(m_scene->server.url(u"/a"_s));
}

void tst_innerpages::harmlessPageOpens()
{
    m_scene->open(u"chrome://histograms/"_s);
    QVERIFY(m_scene->browser->hasDocument());
}

void tst_innerpages::pageReachesNoInnerFile_data()
{
    QTest::addColumn<QByteArray>("attack");
    const auto row = [](const char *name, const QByteArray &attack) {
        QTest::addRow("%s", name) << attack;
        QTest::addRow("%s: own page", name) << QByteArray(attack).replace("$inner", own);
    };
    row("script", "await make('script', {src: '$inner'}); return window.QWebChannel && 'ran'");
    row("module",
        "await make('script', {src: '$inner', type: 'module'});"
        "return window.QWebChannel && 'ran'");
    row("import", "return (await import('$inner')) && 'ran'");
    row("style sheet", "return make('link', {rel: 'stylesheet', href: '$inner'})");
    row("import of a style sheet",
        "const s = document.createElement('style'); s.textContent = \"@import '$inner'\";"
        "return new Promise(d => { s.onload = () => d('loaded'); s.onerror = () => d('nothing');"
        "document.head.append(s) })");
    row("fetch", "return (await fetch('$inner')).text()");
    row("fetch without cors", "return (await fetch('$inner', {mode: 'no-cors'})) && 'got'");
    row("request",
        "const r = new XMLHttpRequest; r.open('GET', '$inner', false); r.send();"
        "return r.responseText");
    row("worker",
        "const w = new Worker('$inner'); return new Promise(d => { w.onmessage = "
        "w.onmessageerror = () => d('ran'); w.onerror = () => d('nothing') })");
    row("worker's script",
        "const b = new Blob([`importScripts('$inner'); postMessage('ran')`]);"
        "const w = new Worker(URL.createObjectURL(b));"
        "return new Promise(d => { w.onmessage = () => d('ran'); w.onerror = () => d('nothing') "
        "})");
    row("frame",
        "await make('iframe', {src: '$inner'});"
        "return frames[0].document.body.textContent");
    row("frame's script",
        "const f = document.createElement('iframe');"
        "f.srcdoc = `<script src='$inner'><\\/script>`;"
        "await new Promise(d => { f.onload = d; document.body.append(f) });"
        "return f.contentWindow.QWebChannel && 'ran'");
    row("object",
        "const o = document.createElement('object'); o.data = '$inner';"
        "o.type = 'text/html'; document.body.append(o);"
        "await new Promise(d => setTimeout(d, 700));"
        "return o.contentDocument?.body.textContent");
    row("preload", "return make('link', {rel: 'preload', as: 'script', href: '$inner'})");
}

void tst_innerpages::pageReachesNoInnerFile()
{
    QFETCH(const QByteArray, attack);
    m_scene->server.page("/hostile", hostilePage(attack));
    m_scene->browser->navigate(m_scene->server.url(u"/hostile"_s));
    QTRY_VERIFY(m_scene->browser->page()->title().startsWith("got: "_L1));
    QCOMPARE(m_scene->browser->page()->title(), u"got: nothing"_s);
}

void tst_innerpages::pageGoesToNone_data()
{
    QTest::addColumn<QByteArray>("attack");
    QTest::addColumn<QByteArray>("address");
    for (const char *address :
         {inner, own, guide, "chrome://inducebrowsercrashforrealz", "chrome://kill",
          "view-source:chrome://crash", "devtools://devtools/bundled/x"}) {
        QTest::addRow("before the page is there: %s", address)
            << QByteArray("location = '$address'") << QByteArray(address);
        const auto row = [address](const char *name, const QByteArray &attack) {
            QTest::addRow("%s: %s", name, address)
                << "await new Promise(d => addEventListener('load', () => setTimeout(d)));" + attack
                << QByteArray(address);
        };
        row("address", "location = '$address'");
        row("replaced", "location.replace('$address')");
        row("redirect", "location = '/redirect'");
        row("window", "open('$address')");
        row("redirected window", "open('/redirect')");
        row("frame", "await make('iframe', {src: '$address'})");
        row("redirected frame", "await make('iframe', {src: '/redirect'})");
        row("form",
            "const f = document.createElement('form'); f.action = '$address';"
            "document.body.append(f); f.submit()");
        row("refresh",
            "const m = document.createElement('meta'); m.httpEquiv = 'refresh';"
            "m.content = '0;url=$address'; document.head.append(m)");
        row("link",
            "const l = document.createElement('a'); l.href = '$address';"
            "document.body.append(l); l.click()");
        row("link to a window",
            "const l = document.createElement('a'); l.href = '$address';"
            "l.target = '_blank'; document.body.append(l); l.click()");
    }
}

/// Neither page nor popup gets there, and the program goes on.
void tst_innerpages::pageGoesToNone()
{
    QFETCH(QByteArray, attack);
    QFETCH(const QByteArray, address);
    QtWebBrowser popup(&m_scene->window);
    RecordedEvents events;
    popup.setEvents(&events);
    m_scene->events.nextTarget = &popup;
    TestServer &server = m_scene->server;
    server.redirect("/redirect", address);
    server.page("/hostile",
                hostilePage(attack.replace("$address", address)
                            + "; await new Promise(d => setTimeout(d, 400));"));
    m_scene->browser->navigate(server.url(u"/hostile"_s));
    QTRY_VERIFY(m_scene->browser->hasDocument());
    QTRY_VERIFY(m_scene->browser->page()->title() == "got: nothing"_L1
                || server.count("/redirect") > 0);
    QTRY_VERIFY(!m_scene->browser->isBusy());
    server.page("/after", "<title>After</title>");
    m_scene->open(server.url(u"/after"_s));
    QTRY_COMPARE(m_scene->browser->page()->title(), u"After"_s);
    const QString wrong = QString::fromLatin1(address).section(u':', 0, 0) + u':';
    for (const QString &line : m_scene->events.lines + events.lines)
        QVERIFY2(!line.startsWith("navigated "_L1 + wrong), qPrintable(line));
    m_scene->browser->dropPage();
    popup.dropPage();
}

void tst_innerpages::windowOfItsOwnGoesToNone_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("inner file") << QByteArray(inner);
    QTest::newRow("own page") << QByteArray(own);
    QTest::newRow("guide") << QByteArray(guide);
}

/// A window that a page holds on to may be sent somewhere at any time.
void tst_innerpages::windowOfItsOwnGoesToNone()
{
    QtWebBrowser popup(&m_scene->window);
    RecordedEvents events;
    popup.setEvents(&events);
    m_scene->events.nextTarget = &popup;
    QFETCH(const QByteArray, address);
    m_scene->server.page(
        "/hostile",
        hostilePage("const w = open(''); await new Promise(d => setTimeout(d, 300));"
                    "w.location = '$address'; await new Promise(d => setTimeout(d, 300));"
                    "const s = w.document.createElement('script'); s.src = '$inner';"
                    "w.document.body.append(s); await new Promise(d => setTimeout(d, 500));"
                    "return w.QWebChannel && 'ran'")
            .replace("$address", address));
    m_scene->browser->navigate(m_scene->server.url(u"/hostile"_s));
    QTRY_VERIFY(m_scene->browser->page()->title().startsWith("got: "_L1));
    QCOMPARE(m_scene->browser->page()->title(), u"got: nothing"_s);
    QCOMPARE(events.lines.filter(u"qrc"_s) + events.lines.filter(u"orvane"_s), QStringList());
    m_scene->browser->dropPage();
    popup.dropPage();
}

ORVANE_ENGINE_TEST_MAIN(tst_innerpages)
#include "tst_innerpages.moc"
