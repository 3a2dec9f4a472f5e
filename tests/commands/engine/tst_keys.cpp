#include <QTimer>
#include <QTreeView>
#include <QWebEngineHistory>
#include <QWebEngineView>
#include <QWindow>
#include <optional>

#include "../Session.h"
#include "EngineTest.h"
#include "FavoritesBar.h"
#include "PageQuestions.h"
#include "SourceEditor.h"
#include "SourceWindow.h"

using namespace Qt::StringLiterals;

/// Keys that no menu shows, pressed in the real window: in a page, in its fields, and beside it.
class tst_Keys : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keysActWhereverTheKeyboardIs_data();
    void keysActWhereverTheKeyboardIs();
    void pageCannotKeepTheKeys();
    void newBlankWindowIsReadyForAnAddress();
    void addressKeyWithoutAnAddressBarAsks();
    void windowsByNumber();
    void windowsByTheirOrder();
    void sourceAndItsWindow();
    void everyInnerWindowCloses();
    void closeKeyWhileThePageAsks_data();
    void closeKeyWhileThePageAsks();

    void backspaceGoesBack_data();
    void backspaceGoesBack();
    void backspaceStays_data();
    void backspaceStays();
    void backspaceInAFieldOfAnotherSite();
    void backspaceRightAfterTyping();
    void backspaceHeldFromAFieldStays();
    void backspaceOfThePagesOwnMakingStays();
    void backspaceCanBeSwitchedOff();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    void go(const QString &path) const
    {
        m_session->frame->navigateActive(url(path));
        QTRY_VERIFY2(m_session->shows(url(path)), qPrintable(path));
    }
    /// As the window system tells it: to the window, which has to find out whose it is.
    static void press(Qt::Key key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(QApplication::focusWidget()->window()->windowHandle(), key, held);
    }
    QWebEngineView &view() const { return *m_session->active()->findChild<QWebEngineView *>(); }
    QVariant ask(const QString &script) const;
    void focusPage() const;
    void click(const QString &element) const;
    void openInHistory(const QByteArray &body);
    void settle() const;
    bool addressHasFocus() const
    {
        return m_session->address().findChild<QLineEdit *>()->hasFocus();
    }
    QString activeTitle() const { return m_session->frame->activeChild()->windowTitle(); }
    void openThree() const;

    std::unique_ptr<Session> m_session;
};

void tst_Keys::init()
{
    m_session = std::make_unique<Session>();
    m_session->server.page("/field", "<title>Field</title><p id=p>Text</p><input id=f value=abc>");
    m_session->start(url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
}

void tst_Keys::cleanup()
{
    const QList<QWidget *> sources = Forms::named("frmSource");
    qDeleteAll(sources);
    m_session.reset();
}

QVariant tst_Keys::ask(const QString &script) const
{
    const auto answer = std::make_shared<std::optional<QVariant>>();
    view().page()->runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, 20000))
        return u"no answer"_s;
    return **answer;
}

void tst_Keys::focusPage() const
{
    m_session->active()->browser()->setFocus();
    QTRY_VERIFY(view().focusProxy() && view().focusProxy()->hasFocus());
    QTRY_VERIFY_WITH_TIMEOUT(ask(u"document.hasFocus()"_s).toBool(), 20000);
}

/// In the middle of what the script names, once the page has painted it.
void tst_Keys::click(const QString &element) const
{
    const QString script =
        u"(() => { const r = %1.getBoundingClientRect(); window.clicks ||= 0;"
        "if (!window.counts) { window.counts = true;"
        "addEventListener('pointerdown', () => ++clicks, true); }"
        "return [r.x + r.width / 2, r.y + r.height / 2, clicks]; })()"_s.arg(element);
    const QVariantList place = ask(script).toList();
    QCOMPARE(place.size(), 3);
    const int before = place.at(2).toInt();
    // The engine takes no click for a page that it has not painted yet.
    QTRY_VERIFY_WITH_TIMEOUT((QTest::mouseClick(view().focusProxy(), Qt::LeftButton, {},
                                                QPoint(place.at(0).toInt(), place.at(1).toInt())),
                              ask(u"clicks"_s).toInt() > before),
                             20000);
}

/// A page behind which there is another to go back to, and the keyboard in it.
void tst_Keys::openInHistory(const QByteArray &body)
{
    m_session->server.page("/here", "<title>Here</title>" + body);
    go(u"/here"_s);
    QVERIFY(view().page()->history()->canGoBack());
    focusPage();
}

/// A key that the page shows comes behind those pressed before, and what it leaves for later behind
/// what they left.
void tst_Keys::settle() const
{
    ask(u"window.last = ''; for (let i = -1; i < frames.length; ++i)"
        "(i < 0 ? window : frames[i]).addEventListener('keyup', (e) => {"
        "if (e.key === 'F9') setTimeout(() => setTimeout(() => last = 'F9')); }, true)"_s);
    QTRY_VERIFY2_WITH_TIMEOUT((press(Qt::Key_F9), ask(u"window.last"_s).toString() == "F9"_L1),
                              qPrintable(m_session->location()), 20000);
    QCoreApplication::processEvents();
    ask(u"1"_s);
}

void tst_Keys::openThree() const
{
    for (const QString &path : {u"/two"_s, u"/home"_s}) {
        m_session->frame->openBrowserWindow(url(path), WindowState::AsOthers);
        QTRY_VERIFY(m_session->shows(url(path)));
    }
    QCOMPARE(m_session->windows(), 3);
}

void tst_Keys::keysActWhereverTheKeyboardIs_data()
{
    QTest::addColumn<QString>("place");
    for (const char *place : {"page", "field", "address", "favorites", "query", "tab"})
        QTest::newRow(place) << QString::fromLatin1(place);
}

void tst_Keys::keysActWhereverTheKeyboardIs()
{
    QFETCH(QString, place);
    go(u"/field"_s);
    const auto focus = [&] {
        focusPage();
        if (place == "field"_L1) {
            ask(u"document.getElementById('f')?.focus()"_s);
            return;
        }
        if (place == "favorites"_L1 && !m_session->item("mnuFavoritesShow")->isChecked())
            m_session->choose("mnuFavoritesShow");
        if (place == "query"_L1 && !m_session->item("mnuViewSearchBar")->isChecked())
            m_session->choose("mnuViewSearchBar");
        QWidget *target = nullptr;
        if (place == "address"_L1)
            target = m_session->address().findChild<QLineEdit *>();
        else if (place == "favorites"_L1)
            target = m_session->frame->findChild<FavoritesBar *>()->findChild<QTreeView *>();
        else if (place == "query"_L1)
            target =
                m_session->frame->findChild<AddressBox *>(u"brwSearch"_s)->findChild<QLineEdit *>();
        else if (place == "tab"_L1)
            target = m_session->tabs().tab(m_session->active()->tabKey());
        if (!target)
            return;
        QTRY_VERIFY(target->isVisible());
        target->setFocus();
        QTRY_VERIFY(target->hasFocus());
    };
    focus();
    press(Qt::Key_Left, Qt::AltModifier);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    focus();
    press(Qt::Key_Right, Qt::AltModifier);
    QTRY_VERIFY(m_session->shows(url(u"/field"_s)));
    focus();
    press(Qt::Key_L, Qt::ControlModifier);
    QTRY_VERIFY(addressHasFocus());
    QCOMPARE(m_session->address().selText(), m_session->address().text());
    focus();
    press(Qt::Key_D, Qt::AltModifier);
    QTRY_VERIFY(addressHasFocus());
    focus();
    press(Qt::Key_U, Qt::ControlModifier);
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
    delete Forms::named("frmSource").first();
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    focus();
    press(Qt::Key_T, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(m_session->active()->browser()->hasDocument());
    press(Qt::Key_1, Qt::ControlModifier);
    QTRY_COMPARE(activeTitle(), u"Field"_s);
    focus();
    press(Qt::Key_9, Qt::ControlModifier);
    QTRY_VERIFY(activeTitle() != u"Field"_s);
    press(Qt::Key_1, Qt::ControlModifier);
    QTRY_COMPARE(activeTitle(), u"Field"_s);
    focus();
    press(Qt::Key_W, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 1);
    QVERIFY(activeTitle() != u"Field"_s);
}

void tst_Keys::pageCannotKeepTheKeys()
{
    openInHistory("<script>for (const n of ['keydown', 'keypress', 'keyup'])"
                  "addEventListener(n, e => { e.preventDefault(); e.stopImmediatePropagation(); },"
                  "true);</script><p>Mine");
    press(Qt::Key_L, Qt::ControlModifier);
    QTRY_VERIFY(addressHasFocus());
    focusPage();
    press(Qt::Key_T, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 2);
    press(Qt::Key_W, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 1);
    focusPage();
    press(Qt::Key_Left, Qt::AltModifier);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_Keys::newBlankWindowIsReadyForAnAddress()
{
    focusPage();
    press(Qt::Key_T, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(addressHasFocus());
    QTRY_VERIFY(m_session->active()->browser()->hasDocument()
                && !m_session->active()->browser()->isBusy());
    QVERIFY(addressHasFocus());
    for (const QChar character : url(u"/two"_s))
        QTest::keyClick(m_session->frame->windowHandle(), character.toLatin1());
    press(Qt::Key_Return);
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QCOMPARE(m_session->windows(), 2);
}

void tst_Keys::addressKeyWithoutAnAddressBarAsks()
{
    m_session->choose("mnuViewToolBarAddressBar");
    focusPage();
    press(Qt::Key_L, Qt::ControlModifier);
    QTRY_COMPARE(Forms::named("frmOpenURL").size(), 1);
    Forms::named("frmOpenURL").first()->close();
}

void tst_Keys::windowsByNumber()
{
    openThree();
    focusPage();
    const QStringList tabs = m_session->tabs().keys();
    for (const auto &[key, position] : {std::pair(Qt::Key_1, 0),
                                        {Qt::Key_2, 1},
                                        {Qt::Key_9, 2},
                                        {Qt::Key_3, 2},
                                        {Qt::Key_1, 0}}) {
        press(key, Qt::ControlModifier);
        QTRY_COMPARE(m_session->active()->tabKey(), tabs.at(position));
        QVERIFY(m_session->tabs().isPressed(tabs.at(position)));
    }
    // There is none.
    for (const Qt::Key key : {Qt::Key_4, Qt::Key_8})
        press(key, Qt::ControlModifier);
    QCOMPARE(m_session->active()->tabKey(), tabs.at(0));
    m_session->choose("mnuWindowMinimizeAll");
    press(Qt::Key_2, Qt::ControlModifier);
    QTRY_COMPARE(m_session->active()->tabKey(), tabs.at(1));
    QVERIFY(!m_session->active()->isMinimized());
}

void tst_Keys::windowsByTheirOrder()
{
    openThree();
    const QStringList tabs = m_session->tabs().keys();
    press(Qt::Key_1, Qt::ControlModifier);
    QTRY_COMPARE(m_session->active()->tabKey(), tabs.at(0));
    const auto expect = [&](Qt::Key key, Qt::KeyboardModifiers held, int position) {
        focusPage();
        press(key, held);
        QTRY_COMPARE(m_session->active()->tabKey(), tabs.at(position));
    };
    const Qt::KeyboardModifiers back = Qt::ControlModifier | Qt::ShiftModifier;
    expect(Qt::Key_Tab, Qt::ControlModifier, 1);
    expect(Qt::Key_Tab, Qt::ControlModifier, 2);
    expect(Qt::Key_Tab, Qt::ControlModifier, 0);
    expect(Qt::Key_Backtab, back, 2);
    expect(Qt::Key_PageUp, Qt::ControlModifier, 1);
    expect(Qt::Key_PageUp, Qt::ControlModifier, 0);
    expect(Qt::Key_PageUp, Qt::ControlModifier, 2);
    expect(Qt::Key_PageDown, Qt::ControlModifier, 0);
}

void tst_Keys::sourceAndItsWindow()
{
    focusPage();
    press(Qt::Key_U, Qt::ControlModifier);
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
    auto *source = qobject_cast<SourceWindow *>(Forms::named("frmSource").first());
    source->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), source);
    // The frame's keys are not the source's.
    press(Qt::Key_T, Qt::ControlModifier);
    press(Qt::Key_1, Qt::ControlModifier);
    QTest::simulateEvent(source->windowHandle(), true, Qt::Key_W, Qt::ControlModifier, {}, true);
    QVERIFY2(source->isVisible(), "a key that was held closes nothing more");
    press(Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(Forms::named("frmSource").isEmpty());
    QCOMPARE(m_session->windows(), 1);
}

void tst_Keys::everyInnerWindowCloses()
{
    m_session->choose("mnuToolsDownloads");
    QTRY_COMPARE(Forms::named("frmDownloads").size(), 1);
    QTRY_COMPARE(m_session->frame->activeChild(), Forms::named("frmDownloads").first());
    press(Qt::Key_1, Qt::ControlModifier);
    QTRY_VERIFY(m_session->active());
    press(Qt::Key_2, Qt::ControlModifier);
    QTRY_VERIFY(!m_session->active());
    // What is about pages has none.
    press(Qt::Key_U, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::AltModifier);
    press(Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(Forms::named("frmDownloads").isEmpty());
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(Forms::named("frmSource").isEmpty());
}

void tst_Keys::closeKeyWhileThePageAsks_data()
{
    QTest::addColumn<QString>("script");
    QTest::newRow("script that waits") << u"setTimeout(() => alert('Well?'))"_s;
    QTest::newRow("permission") << u"navigator.geolocation.getCurrentPosition(() => {})"_s;
}

void tst_Keys::closeKeyWhileThePageAsks()
{
    QFETCH(QString, script);
    focusPage();
    // While a script waits, only what is called by the event loop runs.
    QTimer presses;
    connect(&presses, &QTimer::timeout, this, [&] {
        if (!m_session->active()->questions()->shownQuestion())
            return;
        presses.stop();
        press(Qt::Key_W, Qt::ControlModifier);
    });
    presses.start(20);
    ask(script);
    QTRY_COMPARE(m_session->windows(), 0);
    press(Qt::Key_T, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 1);
    QTRY_VERIFY(m_session->active()->browser()->hasDocument());
}

void tst_Keys::backspaceGoesBack_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("clicked");
    QTest::newRow("page") << QByteArray("<p>Text") << QString();
    QTest::newRow("click in text")
        << QByteArray("<p id=c>Text<p><input>") << u"document.getElementById('c')"_s;
    QTest::newRow("link") << QByteArray("<a id=c href='#x'>Link</a><script>c.focus()</script>")
                          << QString();
    QTest::newRow("button") << QByteArray("<button id=c>Press</button>")
                            << u"document.getElementById('c')"_s;
    QTest::newRow("picture") << QByteArray("<img id=c width=90 height=90><canvas></canvas>")
                             << u"document.getElementById('c')"_s;
    QTest::newRow("stopped on its way")
        << QByteArray("<p>Text<script>addEventListener('keydown', e =>"
                      "e.stopImmediatePropagation(), true)</script>")
        << QString();
    QTest::newRow("after a canvas")
        << QByteArray("<canvas></canvas><p id=c>Text") << u"document.getElementById('c')"_s;
}

void tst_Keys::backspaceGoesBack()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, clicked);
    openInHistory(page);
    if (!clicked.isEmpty())
        click(clicked);
    press(Qt::Key_Backspace);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_Keys::backspaceStays_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("act");
    const QString clicked = u"click"_s;
    const QString focused = u"focus"_s;
    const auto add = [](const char *name, const char *page, const QString &act) {
        QTest::newRow(name) << QByteArray(page) << act;
    };
    add("field", "<input id=c value=abc>", clicked);
    add("field that was only focused", "<input id=c value=abc>", focused);
    add("field that is not to be changed", "<input id=c value=abc readonly>", clicked);
    add("text area", "<textarea id=c>abc</textarea>", clicked);
    add("list", "<select id=c><option>abc<option>bcd</select>", focused);
    add("check box", "<input id=c type=checkbox>", clicked);
    add("rich text", "<div id=c contenteditable>abc</div>", clicked);
    add("page that is edited", "<p id=c>abc<script>document.designMode = 'on'</script>", clicked);
    add("canvas", "<canvas id=c width=200 height=200 style='background:#eee'></canvas>", clicked);
    add("canvas with the keyboard",
        "<canvas id=c width=200 height=200 tabindex=0 style='background:#eee'></canvas>", focused);
    add("control of its own", "<div id=c tabindex=0 role=textbox>abc</div>", focused);
    add("program", "<body role=application><p id=c>abc", clicked);
    add("open shadow tree",
        "<div id=c></div><script>c.attachShadow({mode: 'open'}).innerHTML ="
        "'<input value=abc>'; c.focus = () => c.shadowRoot.firstChild.focus()</script>",
        focused);
    add("closed shadow tree",
        "<div id=c></div><script>{const s = c.attachShadow({mode: 'closed'}); s.innerHTML ="
        "'<input value=abc>'; c.focus = () => s.firstChild.focus()}</script>",
        focused);
    add("closed shadow tree of the whole page",
        "<body id=c><script>{const s = c.attachShadow({mode: 'closed'}); s.innerHTML ="
        "'<input value=abc>'; c.focus = () => s.firstChild.focus()}</script>",
        focused);
    add("key that the page takes",
        "<p id=c>abc<script>addEventListener('keydown', e => e.preventDefault())</script>",
        clicked);
    add("field that the page goes on to",
        "<p id=c>abc<input id=g value=abc><script>addEventListener('keydown', () => g.focus())"
        "</script>",
        clicked);
    add("frame with a field",
        "<iframe id=c srcdoc='<input id=f value=abc>'></iframe><script>"
        "c.focus = () => { c.contentWindow.focus(); c.contentDocument.getElementById(`f`).focus(); "
        "}"
        "</script>",
        focused);
}

void tst_Keys::backspaceStays()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, act);
    openInHistory(page);
    if (act == "click"_L1)
        click(u"document.getElementById('c')"_s);
    else
        ask(u"document.getElementById('c').focus()"_s);
    press(Qt::Key_Backspace);
    settle();
    QCOMPARE(m_session->location(), url(u"/here"_s));
    QVERIFY(!m_session->active()->browser()->isBusy());
}

/// Its frame is in a process of its own, and the page itself knows nothing of its field.
void tst_Keys::backspaceInAFieldOfAnotherSite()
{
    const QByteArray other =
        m_session->server.url(u"/inner"_s).replace(u"127.0.0.1"_s, u"localhost"_s).toUtf8();
    m_session->server.page("/inner",
                           "<input id=f value=abc style='width:200px;height:90px'><script>"
                           "f.oninput = () => parent.postMessage(f.value, '*')</script>");
    openInHistory("<iframe id=c width=300 height=150 src='" + other
                  + "'></iframe><script>let told = ''; onmessage = e => told = e.data</script>");
    const QPoint inField(80, 50);
    // What it takes says that the keyboard is there.
    QTRY_VERIFY_WITH_TIMEOUT((QTest::mouseClick(view().focusProxy(), Qt::LeftButton, {}, inField),
                              QTest::keyClick(view().focusProxy(), Qt::Key_X),
                              ask(u"told"_s).toString().contains(u'x')),
                             20000);
    const qsizetype before = ask(u"told"_s).toString().size();
    press(Qt::Key_Backspace);
    QTRY_VERIFY(ask(u"told"_s).toString().size() < before);
    QCOMPARE(m_session->location(), url(u"/here"_s));
    QVERIFY(!m_session->active()->browser()->isBusy());
}

/// Faster than the engine could tell anybody of the field.
void tst_Keys::backspaceRightAfterTyping()
{
    openInHistory("<p>Text</p><input id=f value=abc><script>addEventListener('keydown', e => {"
                  "if (e.key === 'j') f.focus(); })</script>");
    press(Qt::Key_J);
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    settle();
    QCOMPARE(m_session->location(), url(u"/here"_s));
    QVERIFY(!m_session->active()->browser()->isBusy());
}

void tst_Keys::backspaceHeldFromAFieldStays()
{
    openInHistory("<input id=f value=a><script>f.oninput = () => f.blur()</script>");
    ask(u"f.focus(), f.setSelectionRange(1, 1)"_s);
    press(Qt::Key_Backspace);
    QTRY_COMPARE(ask(u"f.value + document.activeElement.localName"_s).toString(), u"body"_s);
    QWindow *window = QApplication::focusWidget()->window()->windowHandle();
    for (int i = 0; i < 5; ++i)
        QTest::simulateEvent(window, true, Qt::Key_Backspace, {}, {}, true);
    QTest::simulateEvent(window, false, Qt::Key_Backspace, {}, {}, false);
    settle();
    QCOMPARE(m_session->location(), url(u"/here"_s));
    QVERIFY(!m_session->active()->browser()->isBusy());
}

void tst_Keys::backspaceOfThePagesOwnMakingStays()
{
    openInHistory("<p>Text");
    ask(u"for (let i = 0; i < 1000; ++i) document.body.dispatchEvent(new KeyboardEvent('keydown',"
        "{key: 'Backspace', bubbles: true, composed: true}))"_s);
    settle();
    QCOMPARE(m_session->location(), url(u"/here"_s));
    QVERIFY(!m_session->active()->browser()->isBusy());
}

void tst_Keys::backspaceCanBeSwitchedOff()
{
    QVERIFY(m_session->folder.setSetting(u"Settings"_s, u"BackspaceGoesBack"_s, u"0"_s));
    openInHistory("<p>Text");
    press(Qt::Key_Backspace);
    settle();
    QCOMPARE(m_session->location(), url(u"/here"_s));
    QVERIFY(!m_session->active()->browser()->isBusy());
    QVERIFY(m_session->folder.setSetting(u"Settings"_s, u"BackspaceGoesBack"_s, u"1"_s));
    press(Qt::Key_Backspace);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

ORVANE_ENGINE_TEST_MAIN(tst_Keys)
#include "tst_keys.moc"
