// What pages may do with the files of this machine: a saved page shows its own parts; no page reads
// another file, and a page of the web does not even reach one.
#include "ControlScene.h"
#include "EngineTest.h"

#include <QTemporaryDir>
#include <QUrl>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
constexpr auto secret = "the contents of another file";
/// What an attack ends with when it got nothing.
constexpr auto nothing = "nothing"_L1;

/// Blue, one pixel.
QByteArray picture()
{
    return QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNkYPj/"
                                  "HwADBwIAMCbHYQAAAABJRU5ErkJggg==");
}

/// A page that runs `attack`, an async function's body that returns what it read, and puts what
/// came of it into its title. `$other` there is the address of a file of the user's.
QByteArray hostilePage(const QByteArray &attack, const QUrl &folder)
{
    QByteArray page = R"(<!doctype html><meta charset=utf-8><title>at work</title><body><script>
        const within = (ms, promise) => Promise.race([promise,
            new Promise(resolve => setTimeout(() => resolve('nothing'), ms))]);
        const loaded = (name, attributes) => new Promise(resolve => {
            const element = document.createElement(name);
            element.onload = element.onerror = () => resolve(element);
            for (const [key, value] of Object.entries(attributes))
                element.setAttribute(key, value);
            document.body.append(element);
        });
        const said = new Promise(resolve => onmessage = event => resolve(String(event.data)));
        const work = async () => { %ATTACK% };
        within(2000, work()).catch(error => 'nothing').then(
            read => document.title = 'read: ' + (read || 'nothing'));
        </script>)";
    page.replace("%ATTACK%", attack);
    return page.replace("$folder", folder.toEncoded());
}
}

class tst_localfiles : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void savedPageShowsItsParts();
    void pipesHoldNothing_data();
    void pipesHoldNothing();
    void readsNoOtherFile_data();
    void readsNoOtherFile();
    void popupIsNotReadable();
    void popupOfItsOwnReadsNothing();
    void webReachesNoFile_data();
    void webReachesNoFile();

private:
    QString write(const QString &name, const QByteArray &content) const;
    QUrl folder() const { return QUrl::fromLocalFile(m_folder->path()); }
    QString read() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ControlScene> m_scene;
};

/// The address of the file written.
QString tst_localfiles::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_folder->filePath(name));
    QDir().mkpath(QFileInfo(file).path());
    [&] { QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size()); }();
    return QString::fromLatin1(QUrl::fromLocalFile(file.fileName()).toEncoded());
}

void tst_localfiles::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_scene = std::make_unique<ControlScene>();
    write(u"other.txt"_s, secret);
    write(u"other.html"_s, QByteArray("<!doctype html><body>") + secret);
    write(u"other.js"_s, QByteArray("export const text = '") + secret + "';");
    write(u"other.css"_s, QByteArray("#x::after { content: '") + secret + "' }");
    write(u"other.svg"_s,
          QByteArray("<svg xmlns='http://www.w3.org/2000/svg'><text id='t'>") + secret
              + "</text></svg>");
    write(u"other.vtt"_s, QByteArray("WEBVTT\n\n00:00.000 --> 00:09.000\n") + secret + "\n");
    write(u"other.png"_s, picture());
    write(u"worker.js"_s,
          QByteArray("fetch('other.txt').then(a => a.text()).then(t => "
                     "postMessage(t)).catch(() => postMessage('nothing'))"));
}

void tst_localfiles::cleanup()
{
    m_scene.reset();
    m_folder.reset();
}

/// What the page's attack ended with.
QString tst_localfiles::read() const
{
    const QString start = u"read: "_s;
    [&] { QTRY_VERIFY(m_scene->browser->page()->title().startsWith(start)); }();
    return m_scene->browser->page()->title().sliced(start.size());
}

void tst_localfiles::savedPageShowsItsParts()
{
    write(u"My Page_files/style.css"_s, "@import 'more.css'; h1 { color: rgb(1, 2, 3) }");
    write(u"My Page_files/more.css"_s, "h1 { background: url(pic.png) rgb(4, 5, 6) }");
    write(u"My Page_files/pic.png"_s, picture());
    write(u"My Page_files/code.js"_s, "window.ran = 'ran';");
    write(u"My Page_files/frame.html"_s,
          "<!doctype html><body><img src='pic.png' onload=\"parent.postMessage('frame ' + "
          "this.naturalWidth, '*')\">");
    const QString page =
        write(u"My Page.html"_s,
              "<!doctype html><script>onmessage = e => window.told = e.data</script>"
              "<link rel=stylesheet href='My%20Page_files/style.css'><h1>Saved</h1>"
              "<img id=pic src='My%20Page_files/pic.png'>"
              "<script src='My%20Page_files/code.js'></script>"
              "<iframe src='My%20Page_files/frame.html'></iframe>");
    m_scene->open(page);
    QTRY_COMPARE(m_scene->script(u"window.told"_s), u"frame 1"_s);
    QCOMPARE(m_scene->script(u"window.ran"_s), u"ran"_s);
    QCOMPARE(m_scene->script(u"pic.naturalWidth"_s), u"1"_s);
    QCOMPARE(m_scene->script(u"getComputedStyle(document.querySelector('h1')).color"_s),
             u"rgb(1, 2, 3)"_s);
    QCOMPARE(m_scene->script(u"getComputedStyle(document.querySelector('h1')).backgroundColor"_s),
             u"rgb(4, 5, 6)"_s);
}

void tst_localfiles::pipesHoldNothing_data()
{
    QTest::addColumn<bool>("isPart");
    QTest::newRow("as the page") << false;
    QTest::newRow("as a part of one") << true;
}

/// Whoever waits for one that nobody writes to does so until the program ends, which never does.
void tst_localfiles::pipesHoldNothing()
{
    QFETCH(const bool, isPart);
    const QByteArray pipe = QFile::encodeName(m_folder->filePath(u"pipe"_s));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    QString address = folder().toString() + u"/pipe"_s;
    if (isPart)
        address = write(u"with.html"_s, "<!doctype html><img src=pipe>");
    m_scene->browser->navigate(address);
    QTRY_VERIFY(m_scene->browser->hasDocument() && !m_scene->browser->isBusy());
    // Who waits can be written to.
    const int end = ::open(pipe.constData(), O_WRONLY | O_NONBLOCK);
    if (end >= 0)
        ::close(end);
    QVERIFY(end < 0);
}

void tst_localfiles::readsNoOtherFile_data()
{
    QTest::addColumn<QByteArray>("attack");
    const auto row = [](const char *name, const QByteArray &attack) {
        QTest::addRow("%s", name) << attack;
    };
    row("fetch", "return (await fetch('other.txt')).text()");
    row("fetch without cors",
        "return (await fetch('$folder/other.txt', {mode: 'no-cors'})).text()");
    row("request",
        "const r = new XMLHttpRequest; r.open('GET', 'other.txt');"
        "return new Promise(d => { r.onloadend = () => d(r.responseText); r.send(); })");
    row("request at once",
        "const r = new XMLHttpRequest; r.open('GET', 'other.txt', false);"
        "r.send(); return r.responseText");
    row("frame",
        "const f = await loaded('iframe', {src: 'other.html'});"
        "return f.contentWindow.document.body.textContent");
    row("frame of text",
        "const f = await loaded('iframe', {src: '$folder/other.txt'});"
        "return f.contentDocument.body.textContent");
    row("frame of a folder",
        "const f = await loaded('iframe', {src: 'file:///'});"
        "return f.contentDocument.body.textContent");
    row("script in a frame",
        "const f = await loaded('iframe', {src: 'other.html'});"
        "f.src = 'javascript:parent.postMessage(document.body.textContent)';"
        "return said");
    row("object",
        "const o = await loaded('object', {data: 'other.html', type: 'text/html'});"
        "return o.contentDocument.body.textContent");
    row("embed",
        "const e = await loaded('embed', {src: 'other.svg', type: 'image/svg+xml'});"
        "return e.getSVGDocument().documentElement.textContent");
    row("frame of its own",
        "await loaded('iframe', {srcdoc: `<script>fetch('$folder/other.txt')"
        ".then(a => a.text()).then(t => parent.postMessage(t, '*'))"
        "<\\/script>`}); return said");
    row("frame made of bytes",
        "const b = new Blob([`<script>fetch('$folder/other.txt').then(a => a.text())"
        ".then(t => parent.postMessage(t, '*'))<\\/script>`], {type: 'text/html'});"
        "await loaded('iframe', {src: URL.createObjectURL(b)}); return said");
    row("frame of data",
        "await loaded('iframe', {src: `data:text/html,<script>fetch('$folder/other.txt')"
        ".then(a => a.text()).then(t => parent.postMessage(t, '*'))<\\/script>`}); return said");
    row("worker",
        "const w = new Worker('worker.js');"
        "return new Promise(d => w.onmessage = e => d(e.data))");
    row("worker made of bytes",
        "const b = new Blob([`fetch('$folder/other.txt').then(a => a.text()).then(t => "
        "postMessage(t))`]); const w = new Worker(URL.createObjectURL(b));"
        "return new Promise(d => w.onmessage = e => d(e.data))");
    row("shared worker",
        "const w = new SharedWorker('worker.js');"
        "return new Promise(d => w.port.onmessage = e => d(e.data))");
    row("module", "return (await import('$folder/other.js')).text");
    row("style sheet",
        "const l = await loaded('link', {rel: 'stylesheet', href: 'other.css'});"
        "return l.sheet.cssRules[0].cssText");
    row("picture",
        "const i = await loaded('img', {src: 'other.png'});"
        "const c = document.createElement('canvas').getContext('2d');"
        "c.drawImage(i, 0, 0); return String(c.getImageData(0, 0, 1, 1).data)");
    row("picture in a texture",
        "const i = await loaded('img', {src: 'other.png'});"
        "const c = document.createElement('canvas');"
        "c.getContext('2d').drawImage(i, 0, 0); return c.toDataURL()");
    row("captions",
        "const v = await loaded('video', {}); const t = document.createElement('track');"
        "t.src = 'other.vtt'; t.default = true; v.append(t); t.track.mode = 'showing';"
        "await new Promise(d => t.onload = t.onerror = d);"
        "return t.track.cues[0].text");
    row("import of markup",
        "const l = await loaded('link', {rel: 'import', href: 'other.html'});"
        "return l.import.body.textContent");
    row("events",
        "const s = new EventSource('other.txt');"
        "return new Promise(d => s.onmessage = e => d(e.data))");
    row("another address",
        "history.pushState(0, '', '$folder/other.html');"
        "return (await fetch(location.href)).text()");
    row("relaxed domain",
        "document.domain = ''; const f = await loaded('iframe', {src: "
        "'other.html'}); return f.contentDocument.body.textContent");
    row("style of its own",
        "const p = new XSLTProcessor; const x = new DOMParser().parseFromString("
        "`<x:stylesheet version='1.0' "
        "xmlns:x='http://www.w3.org/1999/XSL/Transform'><x:template match='/'>"
        "<o><x:value-of select=\"document('$folder/other.svg')\"/></o>"
        "</x:template></x:stylesheet>`, 'text/xml'); p.importStylesheet(x);"
        "return p.transformToDocument(x).documentElement.textContent");
}

void tst_localfiles::readsNoOtherFile()
{
    QFETCH(const QByteArray, attack);
    m_scene->open(write(u"saved.html"_s, hostilePage(attack, folder())));
    QCOMPARE(read(), nothing);
}

/// A window that the page opens shows the file, but the page does not get at it.
void tst_localfiles::popupIsNotReadable()
{
    QtWebBrowser popup(&m_scene->window);
    RecordedEvents events;
    popup.setEvents(&events);
    m_scene->events.nextTarget = &popup;
    const QByteArray attack =
        "const w = open('other.html'); await new Promise(d => setTimeout(d, 500));"
        "for (let i = 0; i < 20; ++i) { await new Promise(d => setTimeout(d, 100));"
        "  try { if (w.document.body.textContent) return w.document.body.textContent } catch {} }";
    m_scene->open(write(u"saved.html"_s, hostilePage(attack, folder())));
    QCOMPARE(read(), nothing);
    m_scene->browser->dropPage();
    popup.dropPage();
}

/// What a page writes into a window of its own has the page's rights and no more.
void tst_localfiles::popupOfItsOwnReadsNothing()
{
    QtWebBrowser popup(&m_scene->window);
    RecordedEvents events;
    popup.setEvents(&events);
    m_scene->events.nextTarget = &popup;
    const QByteArray attack =
        "const w = open(''); w.document.write(`<iframe src='$folder/other.html'></iframe><script>"
        "setTimeout(() => { try { opener.postMessage(frames[0].document.body.textContent, '*') }"
        " catch { fetch('$folder/other.txt').then(a => a.text())"
        ".then(t => opener.postMessage(t, '*')) } }, 1000)<\\/script>`); return said";
    m_scene->open(write(u"saved.html"_s, hostilePage(attack, folder())));
    QCOMPARE(read(), nothing);
    m_scene->browser->dropPage();
    popup.dropPage();
}

void tst_localfiles::webReachesNoFile_data()
{
    QTest::addColumn<QByteArray>("attack");
    const auto row = [](const char *name, const QByteArray &attack) {
        QTest::addRow("%s", name) << attack;
    };
    row("fetch", "return (await fetch('$folder/other.txt', {mode: 'no-cors'})).text()");
    row("script",
        "const s = document.createElement('script'); s.src = '$folder/other.js';"
        "return new Promise(d => { s.onload = () => d('loaded');"
        " s.onerror = () => d('nothing'); document.body.append(s) })");
    row("picture",
        "const i = await loaded('img', {src: '$folder/other.png'});"
        "return i.naturalWidth ? 'loaded' : 'nothing'");
    row("frame",
        "const f = await within(1500, loaded('iframe', {src: '$folder/other.html'}));"
        "return frames[0].document.body.textContent");
    row("address",
        "location = '$folder/other.html';"
        "await new Promise(d => setTimeout(d, 1500)); return 'nothing'");
    row("form",
        "const f = document.createElement('form'); f.action = '$folder/other.html';"
        "document.body.append(f); f.submit();"
        "await new Promise(d => setTimeout(d, 1500)); return 'nothing'");
    row("redirect",
        "location = '/to-file';"
        "await new Promise(d => setTimeout(d, 1500)); return 'nothing'");
    row("window",
        "open('$folder/other.html');"
        "await new Promise(d => setTimeout(d, 1500)); return 'nothing'");
}

void tst_localfiles::webReachesNoFile()
{
    QFETCH(const QByteArray, attack);
    QtWebBrowser popup(&m_scene->window);
    RecordedEvents events;
    popup.setEvents(&events);
    m_scene->events.nextTarget = &popup;
    m_scene->server.page("/a", hostilePage(attack, folder()));
    m_scene->server.redirect("/to-file", QByteArray(folder().toEncoded() + "/other.html"));
    m_scene->browser->navigate(m_scene->server.url(u"/a"_s));
    if (qstrcmp(QTest::currentDataTag(), "redirect") != 0) {
        QCOMPARE(read(), nothing);
        QCOMPARE(m_scene->browser->locationUrl(), m_scene->server.url(u"/a"_s));
    } else {
        QTRY_VERIFY(m_scene->server.count("/to-file") == 1);
        QTRY_VERIFY(!m_scene->browser->isBusy());
    }
    QVERIFY(!m_scene->browser->locationUrl().startsWith("file:"_L1));
    QVERIFY(!popup.locationUrl().startsWith("file:"_L1));
    m_scene->browser->dropPage();
    popup.dropPage();
}

ORVANE_ENGINE_TEST_MAIN(tst_localfiles)
#include "tst_localfiles.moc"
