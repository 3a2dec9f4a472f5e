// What scripts may do with the clipboard.
#include "ControlScene.h"
#include "EngineTest.h"
#include "WebView.h"

#include <QClipboard>

using namespace Qt::StringLiterals;

class tst_pageclipboard : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void clickCopies_data();
    void clickCopies();
    void keyCopies();
    void nothingIsWrittenUnasked_data();
    void nothingIsWrittenUnasked();
    void keysThatAreNoAct();
    void nextPageHasNoAct();
    void nothingIsRead_data();
    void nothingIsRead();
    void frameOfAnotherSite_data();
    void frameOfAnotherSite();

private:
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }
    QString log() const { return m_scene->script(u"log.join(' | ')"_s); }
    void click() const
    {
        auto *view = m_scene->window.findChild<WebView *>();
        QTest::mouseClick(view->focusProxy(), Qt::LeftButton, {}, QPoint(300, 200));
    }
    /// Clicks until the page has seen it: what is not painted yet takes none.
    void clickUntil(const QString &expected) const
    {
        QTRY_VERIFY2((click(), !log().isEmpty()), "no click arrived");
        QTRY_VERIFY2(log().contains(expected), qPrintable(log()));
    }

    std::unique_ptr<ControlScene> m_scene;
};

namespace {
/// `act` is what the button, and any key, does.
const char page[] = R"(<!doctype html><title>F</title><body style='margin:0'>
<textarea id=t>copied</textarea><button id=b style='position:fixed;left:0;top:100px;width:100%;height:280px'>
</button><script>
var log = [];
const told = name => value => { log.push(name + ' ' + (value && value.name || value)) };
const acts = {
  copy() { t.select(); log.push('copy ' + document.execCommand('copy')) },
  cut() { t.select(); log.push('cut ' + document.execCommand('cut')) },
  text() { navigator.clipboard.writeText('copied').then(told('done'), told('failed')) },
  items() {
    const item = new ClipboardItem({'text/plain': new Blob(['copied'], {type: 'text/plain'})});
    navigator.clipboard.write([item]).then(told('done'), told('failed'));
  },
  later() { fetch('/f').then(r => r.text()).then(acts.text) },
  read() { navigator.clipboard.readText().then(told('read'), told('failed')) },
  readItems() { navigator.clipboard.read().then(told('read'), told('failed')) },
  paste() { t.focus(); t.value = ''; log.push('paste ' + document.execCommand('paste') + t.value) },
};
const act = location.hash.slice(1);
b.onclick = () => acts[act]();
document.onkeydown = () => acts[act]();
</script>)";
}

void tst_pageclipboard::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_scene->server.page("/p", page);
    m_scene->server.page("/f", "text");
    m_scene->window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_scene->window));
    QGuiApplication::clipboard()->setText(u"before"_s);
}

void tst_pageclipboard::cleanup()
{
    m_scene.reset();
}

void tst_pageclipboard::clickCopies_data()
{
    QTest::addColumn<QString>("act");
    QTest::addColumn<QString>("told");
    QTest::newRow("command") << u"copy"_s << u"copy true"_s;
    QTest::newRow("command to cut") << u"cut"_s << u"cut true"_s;
    QTest::newRow("text") << u"text"_s << u"done"_s;
    QTest::newRow("items") << u"items"_s << u"done"_s;
    QTest::newRow("after a request") << u"later"_s << u"done"_s;
}

void tst_pageclipboard::clickCopies()
{
    QFETCH(QString, act);
    QFETCH(QString, told);
    m_scene->open(m_scene->server.url(u"/p#"_s + act));
    m_scene->browser->setFocus();
    clickUntil(told);
    QTRY_COMPARE(clipboard(), u"copied"_s);
}

void tst_pageclipboard::keyCopies()
{
    m_scene->open(m_scene->server.url(u"/p#text"_s));
    m_scene->browser->setFocus();
    const auto *view = m_scene->window.findChild<WebView *>();
    QTRY_VERIFY((QTest::keyClick(view->focusProxy(), Qt::Key_C), log().contains("done"_L1)));
    QTRY_COMPARE(clipboard(), u"copied"_s);
}

void tst_pageclipboard::nothingIsWrittenUnasked_data()
{
    QTest::addColumn<QString>("act");
    QTest::addColumn<QString>("told");
    QTest::newRow("command") << u"copy"_s << u"copy false"_s;
    QTest::newRow("command to cut") << u"cut"_s << u"cut false"_s;
    QTest::newRow("text") << u"text"_s << u"failed NotAllowedError"_s;
    QTest::newRow("items") << u"items"_s << u"failed NotAllowedError"_s;
}

void tst_pageclipboard::nothingIsWrittenUnasked()
{
    QFETCH(QString, act);
    QFETCH(QString, told);
    m_scene->open(m_scene->server.url(u"/p#"_s + act));
    m_scene->browser->setFocus();
    m_scene->script(u"acts[act](); 1"_s);
    QTRY_COMPARE(log(), told);
    QCOMPARE(clipboard(), u"before"_s);
}

void tst_pageclipboard::keysThatAreNoAct()
{
    m_scene->open(m_scene->server.url(u"/p#text"_s));
    m_scene->browser->setFocus();
    const auto *view = m_scene->window.findChild<WebView *>();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Control, Qt::Key_Shift, Qt::Key_Alt})
        QTest::keyClick(view->focusProxy(), key);
    m_scene->script(u"log = []; acts.text(); 1"_s);
    QTRY_COMPARE(log().section(u" | "_s, -1), u"failed NotAllowedError"_s);
    QCOMPARE(clipboard(), u"before"_s);
}

/// A link that was clicked is no act in the page that it leads to.
void tst_pageclipboard::nextPageHasNoAct()
{
    m_scene->open(m_scene->server.url(u"/p#copy"_s));
    m_scene->browser->setFocus();
    clickUntil(u"copy true"_s);
    QGuiApplication::clipboard()->setText(u"before"_s);
    m_scene->server.page("/q", page);
    m_scene->open(m_scene->server.url(u"/q#text"_s));
    m_scene->script(u"acts.text(); 1"_s);
    QTRY_COMPARE(log(), u"failed NotAllowedError"_s);
    QCOMPARE(clipboard(), u"before"_s);
}

void tst_pageclipboard::nothingIsRead_data()
{
    QTest::addColumn<QString>("act");
    QTest::addColumn<QString>("told");
    QTest::newRow("text") << u"read"_s << u"failed NotAllowedError"_s;
    QTest::newRow("items") << u"readItems"_s << u"failed NotAllowedError"_s;
    QTest::newRow("command") << u"paste"_s << u"paste false"_s;
}

/// With a click or without, where nobody can be asked.
void tst_pageclipboard::nothingIsRead()
{
    QFETCH(QString, act);
    QFETCH(QString, told);
    QGuiApplication::clipboard()->setText(u"secret"_s);
    m_scene->open(m_scene->server.url(u"/p#"_s + act));
    m_scene->browser->setFocus();
    m_scene->script(u"acts[act](); 1"_s);
    QTRY_COMPARE(log(), told);
    m_scene->script(u"log = []; 1"_s);
    clickUntil(told);
    QVERIFY(!log().contains("secret"_L1));
}

void tst_pageclipboard::frameOfAnotherSite_data()
{
    QTest::addColumn<QString>("act");
    QTest::newRow("command") << u"copy"_s;
    QTest::newRow("text") << u"text"_s;
}

/// A click in the page is none in its frames.
void tst_pageclipboard::frameOfAnotherSite()
{
    QFETCH(QString, act);
    const QString frame = m_scene->server.url(u"/f#"_s + act, u"localhost"_s);
    m_scene->server.page(
        "/f",
        QByteArray(page)
            + "<script>setInterval(() => acts[act](), 50);"
              "setInterval(() => parent.postMessage(log.join(), '*'), 50)</script>");
    m_scene->server.page(
        "/top",
        "<body style='margin:0;height:1000px'><iframe style='width:90px;height:90px' "
        "src='"
            + frame.toUtf8()
            + "'></iframe><script>var clicks = 0, said = '';"
              "onmessage = event => { said = event.data; };"
              "onclick = () => ++clicks;</script>");
    m_scene->open(m_scene->server.url(u"/top"_s));
    m_scene->browser->setFocus();
    QTRY_VERIFY((click(), m_scene->script(u"clicks"_s).toInt() > 0));
    const auto told = [this] { return m_scene->script(u"said"_s).count(u','); };
    const qsizetype before = told();
    QTRY_VERIFY(told() > before + 5);
    QCOMPARE(clipboard(), u"before"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_pageclipboard)
#include "tst_pageclipboard.moc"
