// The windows that real pages ask for, let through and refused.
#include "EngineTest.h"
#include "EngineVersion.h"
#include "PageAsks.h"
#include "PopupScene.h"

#include <QAction>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_popuprequests : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void userRequests_data() { userRows(); }
    void userRequests();
    void refusedUserRequests_data() { userRows(); }
    void refusedUserRequests();
    void requestsWithoutTheUser_data() { unaskedRows(); }
    void requestsWithoutTheUser();
    void refusedRequestsGiveNull_data() { unaskedRows(); }
    void refusedRequestsGiveNull();
    void refusedWindowOfAClickReportsClosed();
    void markIsFollowedWhereverItIsSet();
    void newWindowGetsItsProperties();
    void emptyWindowCanBeWrittenInto();
    void allowedWindowKnowsItsOpener();
    void allowedWindowCanBeClosedByItsOpener();
    void namedWindowIsReused();
    void featuresGiveTheWindowItsSize();
    void middleClickOpensBehind_data();
    void middleClickOpensBehind();
    void shiftAndCtrlOpenInFront();
    void blockedOneBehindIsNeverSeen();
    void pageHidesNothingBehind();

private:
    void userRows();
    void unaskedRows();
    BrowserWindow *open(const QByteArray &html, bool refusing);
    void trigger(BrowserWindow *opener, const QString &how);

    std::unique_ptr<PopupScene> m_scene;
};

void tst_popuprequests::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/p", "<title>popup</title>popup");
    m_scene->server.page("/marker", "<title>marker</title>");
}

void tst_popuprequests::userRows()
{
    QTest::addColumn<QByteArray>("html");
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("address");
    const auto button = [](const QByteArray &code) {
        return "<button id=b onclick=\"" + code + "\">open</button>";
    };
    const QString p = u"/p"_s;
    QTest::newRow("script") << button("window.open('/p')") << u"click"_s << p;
    QTest::newRow("script, named") << button("window.open('/p','n')") << u"click"_s << p;
    QTest::newRow("script, features")
        << button("window.open('/p','n','width=300,height=200')") << u"click"_s << p;
    QTest::newRow("script, noopener")
        << button("window.open('/p','','noopener')") << u"click"_s << p;
    QTest::newRow("about:blank") << button("window.open('about:blank')") << u"click"_s
                                 << (emptyWindowsAreBlank ? QString() : u"about:blank"_s);
    QTest::newRow("empty") << button("window.open('')") << u"click"_s << QString();
    QTest::newRow("data") << button("window.open('data:text/html,x')") << u"click"_s << QString();
    QTest::newRow("blob") << button("window.open(window.URL.createObjectURL(new Blob(['x'],"
                                    "{type:'text/html'})))")
                          << u"click"_s << u"blob:"_s;
    const auto link = [](const QByteArray &attributes) {
        return "<a id=b href=/p " + attributes + ">link</a>";
    };
    QTest::newRow("link _blank") << link("target=_blank") << u"click"_s << p;
    QTest::newRow("link named") << link("target=n") << u"click"_s << p;
    QTest::newRow("link noreferrer") << link("target=_blank rel=noreferrer") << u"click"_s << p;
    QTest::newRow("link opener") << link("target=_blank rel=opener") << u"click"_s << p;
    QTest::newRow("middle click") << link("") << u"middle"_s << p;
    QTest::newRow("Ctrl+click") << link("") << u"ctrl"_s << p;
    QTest::newRow("Shift+click") << link("") << u"shift"_s << p;
    QTest::newRow("form") << QByteArray("<form action=/p target=_blank>"
                                        "<button id=b>send</button></form>")
                          << u"click"_s << p;
    QTest::newRow("form, posted") << QByteArray("<form action=/p method=post target=n>"
                                                "<button id=b>send</button></form>")
                                  << u"click"_s << p;
}

void tst_popuprequests::unaskedRows()
{
    QTest::addColumn<QByteArray>("html");
    const auto script = [](const QByteArray &code) {
        return "<script>const act=()=>{parent.w=" + code + ";parent.done=1}</script>";
    };
    const QByteArray soon = "<script>setTimeout(act,1)</script>";
    const QByteArray onload = "<script>onload=act</script>";
    QTest::newRow("timer") << script("window.open('/p')") + soon;
    QTest::newRow("onload") << script("window.open('/p')") + onload;
    QTest::newRow("at once") << script("window.open('/p')") + "<script>act()</script>";
    QTest::newRow("named") << script("window.open('/p','n')") + soon;
    QTest::newRow("features") << script("window.open('/p','n','width=300,height=200')") + soon;
    QTest::newRow("sub-frame") << "<iframe srcdoc=\""
            + QByteArray(script("window.open('/p')") + onload).replace("\"", "&quot;")
            + "\"></iframe>";
    QTest::newRow("link") << "<a id=a href=/p target=n></a>"
            + script("(document.getElementById('a').click(), null)") + soon;
}

/// The opener with a second button, whose window proves that nothing else is on its way.
BrowserWindow *tst_popuprequests::open(const QByteArray &html, bool refusing)
{
    m_scene->kill(refusing);
    const QByteArray marker = "<p><button id=m onclick=\"window.open('/marker')\">m</button>";
    const QByteArray told = "<script>for (const e of ['click','auxclick'])"
                            "addEventListener(e,()=>setTimeout(()=>window.clicked=1))</script>";
    return m_scene->openPage(html + marker + told);
}

void tst_popuprequests::trigger(BrowserWindow *opener, const QString &how)
{
    const Qt::MouseButton button = how == "middle"_L1 ? Qt::MiddleButton : Qt::LeftButton;
    Qt::KeyboardModifiers keys;
    keys.setFlag(Qt::ControlModifier, how == "ctrl"_L1);
    keys.setFlag(Qt::ShiftModifier, how == "shift"_L1);
    PopupScene::click(opener, u"b"_s, button, keys);
    QTRY_VERIFY(PopupScene::script(opener, u"window.clicked"_s).toInt() == 1);
}

void tst_popuprequests::userRequests()
{
    QFETCH(const QByteArray, html);
    QFETCH(const QString, how);
    QFETCH(const QString, address);
    BrowserWindow *opener = open(html, false);
    trigger(opener, how);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QVERIFY(popup->isVisible());
    QCOMPARE(m_scene->frame.tabs.tabs.size(), 2);
    if (address.startsWith(u'/'))
        QTRY_VERIFY(popup->browser()->locationUrl().startsWith(m_scene->server.url(address)));
    else
        QTRY_VERIFY(popup->browser()->locationUrl().startsWith(address));
    QCOMPARE(popup->isPopup, address.isEmpty());
}

void tst_popuprequests::refusedUserRequests()
{
    QFETCH(const QByteArray, html);
    QFETCH(const QString, how);
    BrowserWindow *opener = open(html, true);
    const QSignalSpy activated(m_scene->frame.area, &QMdiArea::subWindowActivated);
    trigger(opener, how);
    m_scene->kill(false);
    PopupScene::click(opener, u"m"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->browser()->locationUrl(), m_scene->server.url(u"/marker"_s));
    QCOMPARE(PopupScene::popups().size(), 1);
    QCOMPARE(m_scene->server.count("/p"), 0);
    for (const QList<QVariant> &call : activated) {
        const auto *window = call.first().value<QMdiSubWindow *>();
        QVERIFY(!window || window == opener || window == popup);
    }
}

void tst_popuprequests::requestsWithoutTheUser()
{
    QFETCH(const QByteArray, html);
    open(html, false);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->browser()->locationUrl(), m_scene->server.url(u"/p"_s));
}

void tst_popuprequests::refusedRequestsGiveNull()
{
    QFETCH(const QByteArray, html);
    BrowserWindow *opener = open(html, true);
    QTRY_COMPARE(PopupScene::script(opener, u"window.done"_s).toInt(), 1);
    QVERIFY(PopupScene::script(opener, u"window.w === null"_s).toBool());
    QCOMPARE(PopupScene::popups().size(), 0);
    QCOMPARE(m_scene->server.count("/p"), 0);
}

void tst_popuprequests::refusedWindowOfAClickReportsClosed()
{
    BrowserWindow *opener = open("<button id=b onclick=\"w=window.open('/p')\">b</button>", true);
    trigger(opener, u"click"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"w === null || w.closed"_s).toBool());
    PopupScene::script(opener, u"w && w.location.replace('/p')"_s);
    PopupScene::script(opener, u"1"_s);
    QCOMPARE(PopupScene::popups().size(), 0);
    QCOMPARE(m_scene->server.count("/p"), 0);
}

void tst_popuprequests::markIsFollowedWhereverItIsSet()
{
    BrowserWindow *opener = open({}, false);
    const QString ask = u"window.w = window.open('/p'); window.w === null"_s;
    m_scene->frame.menuItem(u"mnuToolsKillPopUps"_s)->toggle();
    QVERIFY(PopupScene::script(opener, ask).toBool());
    m_scene->frame.menuItem(u"mnuToolsKillPopUps"_s)->setChecked(false);
    QVERIFY(!PopupScene::script(opener, ask).toBool());
    QTRY_COMPARE(PopupScene::popups().size(), 1);
    m_scene->frame.menuItem(u"mnuToolsKillPopUps"_s)->setChecked(true);
    QVERIFY(PopupScene::script(opener, ask).toBool());
    QCOMPARE(PopupScene::popups().size(), 1);
}

void tst_popuprequests::newWindowGetsItsProperties()
{
    m_scene->check(u"mnuToolsScriptErrorSuppress"_s, true);
    TestServer::Reply none;
    none.silent = true;
    m_scene->server.reply("/hang", none);
    BrowserWindow *opener = open("<button id=b onclick=\"window.open('/hang')\">b</button>", false);
    opener->browser()->setSilent(false);
    trigger(opener, u"click"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QVERIFY(popup->browser()->isSilent());
    QCOMPARE(m_scene->frame.tabOf(popup).caption, u"Loading..."_s);
    QCOMPARE(m_scene->frame.activeChild(), popup);
}

void tst_popuprequests::emptyWindowCanBeWrittenInto()
{
    BrowserWindow *opener = open("<button id=b onclick=\"w=window.open('');"
                                 "w.document.write('<title>Written</title>text')\">b</button>",
                                 false);
    trigger(opener, u"click"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"Written"_s);
}

void tst_popuprequests::allowedWindowKnowsItsOpener()
{
    m_scene->server.page("/p", "<title>popup</title><script>opener.told='yes'</script>");
    BrowserWindow *opener = open("<button id=b onclick=\"window.open('/p')\">b</button>", false);
    trigger(opener, u"click"_s);
    QTRY_COMPARE(PopupScene::script(opener, u"window.told"_s).toString(), u"yes"_s);
}

void tst_popuprequests::allowedWindowCanBeClosedByItsOpener()
{
    BrowserWindow *opener = open("<button id=b onclick=\"w=window.open('/p')\">b</button>", false);
    trigger(opener, u"click"_s);
    QPointer<BrowserWindow> popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"popup"_s);
    PopupScene::script(opener, u"w.close(); 1"_s);
    const PageQuestionBox *question = nullptr;
    QTRY_VERIFY((question = PageAsks::shownIn(popup)));
    QCOMPARE(PageAsks::titleOf(question), u"Allow Window Close?"_s);
    PageAsks::press(PageAsks::yes(question));
    QTRY_VERIFY(!popup);
    QTRY_VERIFY(PopupScene::script(opener, u"w.closed"_s).toBool());
}

void tst_popuprequests::namedWindowIsReused()
{
    m_scene->server.page("/q", "<title>second</title>");
    BrowserWindow *opener = open("<button id=b onclick=\"window.open('/p','n')\">b</button>"
                                 "<a id=c href=/q target=n>c</a>",
                                 false);
    trigger(opener, u"click"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"popup"_s);
    m_scene->frame.area->setActiveSubWindow(opener);
    PopupScene::click(opener, u"c"_s);
    QTRY_COMPARE(popup->windowTitle(), u"second"_s);
    QCOMPARE(PopupScene::popups().size(), 1);
}

void tst_popuprequests::featuresGiveTheWindowItsSize()
{
    BrowserWindow *opener = open("<button id=b onclick=\"window.open('/p','n','left=20,top=30,"
                                 "width=320,height=240')\">b</button>",
                                 false);
    opener->showMaximized();
    trigger(opener, u"click"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_VERIFY(!popup->isPopup);
    QVERIFY(!popup->isMaximized());
    // What was asked for and the 57 and 59 pixels around it.
    QTRY_COMPARE(popup->geometry(), QRect(20, 30, 320 + 57, 240 + 59));
    QCOMPARE(PopupScene::control(popup)->widget()->pos(), QPoint(0, 0));
}

void tst_popuprequests::middleClickOpensBehind_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("maximized");
    QTest::newRow("middle") << u"middle"_s << false;
    QTest::newRow("middle, maximized") << u"middle"_s << true;
    QTest::newRow("Ctrl") << u"ctrl"_s << false;
    QTest::newRow("Ctrl, maximized") << u"ctrl"_s << true;
}

void tst_popuprequests::middleClickOpensBehind()
{
    QFETCH(const QString, how);
    QFETCH(const bool, maximized);
    m_scene->server.page("/p", "<title>p</title>");
    BrowserWindow *opener = open("<a id=b href=/p>link</a>", false);
    if (maximized)
        opener->showMaximized();
    QVERIFY(m_scene->frame.tabOf(opener).pressed);
    const QSignalSpy activated(m_scene->frame.area, &QMdiArea::subWindowActivated);
    trigger(opener, how);
    const QWidget *focus = QApplication::focusWidget();
    QVERIFY(focus && opener->isAncestorOf(focus));
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"p"_s);
    QCOMPARE(m_scene->frame.activeChild(), opener);
    QCOMPARE(activated.size(), 0);
    QCOMPARE(QApplication::focusWidget(), focus);
    QCOMPARE(m_scene->frame.area->subWindowList(QMdiArea::StackingOrder),
             (QList<QMdiSubWindow *>{popup, opener}));
    QVERIFY(popup->isVisible() && popup->isEnabled());
    QVERIFY(!popup->isMaximized());
    QCOMPARE(opener->isMaximized(), maximized);
    QVERIFY(m_scene->frame.tabOf(opener).pressed);
    QVERIFY(!m_scene->frame.tabOf(popup).pressed);
    QCOMPARE(m_scene->frame.addressText, opener->shownAddress());
    // It comes to the front as any other.
    m_scene->frame.area->setActiveSubWindow(popup);
    QCOMPARE(m_scene->frame.activeChild(), popup);
    QCOMPARE(popup->isMaximized(), maximized);
}

void tst_popuprequests::shiftAndCtrlOpenInFront()
{
    BrowserWindow *opener = open("<a id=b href=/p>link</a>", false);
    PopupScene::click(opener, u"b"_s, Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(m_scene->frame.activeChild(), popup);
}

void tst_popuprequests::blockedOneBehindIsNeverSeen()
{
    m_scene->smart();
    m_scene->block(m_scene->server.url(u"/p"_s));
    BrowserWindow *opener = open("<a id=b href=/p>link</a>", false);
    trigger(opener, u"middle"_s);
    QTRY_COMPARE(PopupScene::popups().size(), 0);
    QCOMPARE(m_scene->server.count("/p"), 0);
    QCOMPARE(m_scene->frame.activeChild(), opener);
}

/// A window that the user did nothing for comes in front, or not at all.
void tst_popuprequests::pageHidesNothingBehind()
{
    BrowserWindow *opener =
        open("<a id=b href=/p>link</a><script>setTimeout(() => b.dispatchEvent("
             "new MouseEvent('click', {ctrlKey: true, bubbles: true, cancelable: true})), 1)"
             "</script>",
             false);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(m_scene->frame.activeChild(), popup);
    QVERIFY(opener);
}

ORVANE_ENGINE_TEST_MAIN(tst_popuprequests)
#include "tst_popuprequests.moc"
