// Windows in which no page ever arrives: those that a page asked for go, the user's own stay, and
// no tab goes on saying that it loads.
#include "EngineTest.h"
#include "PopupScene.h"

#include <QDir>
#include <QPointer>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

class tst_emptywindows : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void nothingToShowClosesTheWindow_data();
    void nothingToShowClosesTheWindow();
    void downloadIsKept();
    void usersOwnWindowStays_data();
    void usersOwnWindowStays();
    void usersAddressInAPopupClosesNothing();
    void writtenWindowStays();
    void windowWithAPageStays();
    void stoppedWindowStays();
    void emptyWindowIsNamed_data();
    void emptyWindowIsNamed();
    void textThatIsNoAddressNamesItsWindow_data();
    void textThatIsNoAddressNamesItsWindow();

private:
    void answer(const QByteArray &path, int status, const QByteArray &body, const QByteArray &type)
    {
        TestServer::Reply reply;
        reply.status = status;
        reply.body = body;
        reply.type = type;
        m_scene->server.reply(path, reply);
    }
    QString tab(const BrowserWindow *form) { return m_scene->frame.tabOf(form).caption; }

    std::unique_ptr<PopupScene> m_scene;
};

void tst_emptywindows::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/p", "<title>popup</title>popup");
    answer("/none", 204, {}, "text/html");
    answer("/dl", 200, "bytes", "application/octet-stream");
    m_scene->server.redirect("/todl", "/dl");
    TestServer::Reply hang;
    hang.silent = true;
    m_scene->server.reply("/hang", hang);
}

void tst_emptywindows::nothingToShowClosesTheWindow_data()
{
    QTest::addColumn<QByteArray>("html");
    const auto button = [](const QByteArray &code) {
        return "<button id=b onclick=\"" + code + "\">open</button>";
    };
    const auto timer = [](const QByteArray &code) {
        return "<button id=b onclick=\"setTimeout(()=>{" + code + "},1)\">open</button>";
    };
    QTest::newRow("download") << button("w=window.open('/dl')");
    QTest::newRow("download, noopener") << button("window.open('/dl','','noopener')");
    QTest::newRow("download, with a size")
        << button("window.open('/dl','','width=300,height=200')");
    QTest::newRow("download, unasked") << timer("window.open('/dl')");
    QTest::newRow("download, redirected") << button("window.open('/todl')");
    QTest::newRow("download, sent on") << button("window.open('').location='/dl'");
    QTest::newRow("no contents") << button("window.open('/none')");
    QTest::newRow("no contents, unasked") << timer("window.open('/none')");
    QTest::newRow("link to a download") << QByteArray("<a id=b href=/dl target=_blank>d</a>");
    QTest::newRow("link to nothing") << QByteArray("<a id=b href=/none target=_blank>n</a>");
    QTest::newRow("posted form") << QByteArray("<form action=/none method=post target=_blank>"
                                               "<button id=b>send</button></form>");
}

void tst_emptywindows::nothingToShowClosesTheWindow()
{
    QFETCH(const QByteArray, html);
    // Beside the opener another window, which must not get in front.
    BrowserWindow *opener = m_scene->openPage(html);
    m_scene->frame.open(m_scene->server.url(u"/p"_s));
    QTRY_COMPARE(browserForms().size(), 2);
    m_scene->frame.area->setActiveSubWindow(opener);
    m_scene->frame.window()->activateWindow();
    QTRY_VERIFY(m_scene->frame.window()->isActiveWindow());
    opener->browser()->setFocus();
    const QWidget *focus = QApplication::focusWidget();
    QVERIFY(focus);
    PopupScene::click(opener, u"b"_s);
    QTRY_COMPARE(m_scene->server.count("/none") + m_scene->server.count("/dl"), 1);
    QTRY_COMPARE(m_scene->frame.area->subWindowList().size(), 2);
    QCOMPARE(m_scene->frame.tabs.tabs.size(), 2);
    QTRY_COMPARE(m_scene->frame.activeChild(), opener);
    QTRY_COMPARE(QApplication::focusWidget(), focus);
}

void tst_emptywindows::downloadIsKept()
{
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    answer("/kept.bin", 200, QByteArray(300000, 'x'), "application/octet-stream");
    BrowserWindow *opener = m_scene->openPage("<a id=b href=/kept.bin target=_blank>d</a>");
    PopupScene::click(opener, u"b"_s);
    QTRY_COMPARE(QFileInfo(folder.filePath(u"kept.bin"_s)).size(), 300000);
    QTRY_COMPARE(m_scene->frame.area->subWindowList().size(), 1);
}

void tst_emptywindows::usersOwnWindowStays_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("download") << u"/dl"_s;
    QTest::newRow("no contents") << u"/none"_s;
}

void tst_emptywindows::usersOwnWindowStays()
{
    QFETCH(const QString, path);
    const QString address = m_scene->server.url(path);
    BrowserWindow *fresh = m_scene->frame.open(address);
    QTRY_VERIFY(tab(fresh) != u"Loading..."_s);
    QCOMPARE(fresh->windowTitle(), address);
    BrowserWindow *shown = m_scene->openPage("page");
    shown->browser()->navigate(address);
    QTRY_COMPARE(m_scene->server.count(path.toLatin1()), 2);
    QTRY_VERIFY(!shown->browser()->isBusy());
    QCOMPARE(PopupScene::script(shown, u"document.title"_s).toString(), u"opener"_s);
    QCOMPARE(browserForms(), (QList<BrowserWindow *>{fresh, shown}));
}

/// A window that a page asked for is the user's as soon as he names an address there.
void tst_emptywindows::usersAddressInAPopupClosesNothing()
{
    BrowserWindow *opener =
        m_scene->openPage("<button id=b onclick=\"window.open('')\">b</button>");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    popup->browser()->navigate(m_scene->server.url(u"/none"_s));
    QTRY_COMPARE(m_scene->server.count("/none"), 1);
    QTRY_VERIFY(!popup->browser()->isBusy());
    PopupScene::script(popup, u"1"_s);
    QCOMPARE(PopupScene::popups(), QList<BrowserWindow *>{popup});
}

void tst_emptywindows::writtenWindowStays()
{
    BrowserWindow *opener = m_scene->openPage(
        "<button id=b onclick=\"w=window.open('');w.document.write('<title>Written</title>text');"
        "w.document.close();setTimeout(()=>{w.location='/none'},1)\">b</button>");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(m_scene->server.count("/none"), 1);
    QTRY_VERIFY(!popup->browser()->isBusy());
    QTRY_COMPARE(popup->windowTitle(), u"Written"_s);
    QCOMPARE(PopupScene::script(popup, u"document.body.textContent"_s).toString(), u"text"_s);
    QCOMPARE(PopupScene::popups(), QList<BrowserWindow *>{popup});
}

void tst_emptywindows::windowWithAPageStays()
{
    BrowserWindow *opener =
        m_scene->openPage("<button id=b onclick=\"w=window.open('/p')\">b</button>");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"popup"_s);
    PopupScene::script(opener, u"w.location='/dl'; 1"_s);
    QTRY_COMPARE(m_scene->server.count("/dl"), 1);
    QTRY_VERIFY(!popup->browser()->isBusy());
    QCOMPARE(PopupScene::script(popup, u"document.title"_s).toString(), u"popup"_s);
}

void tst_emptywindows::stoppedWindowStays()
{
    BrowserWindow *opener =
        m_scene->openPage("<button id=b onclick=\"w=window.open('/hang')\">b</button>");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(m_scene->server.count("/hang"), 1);
    QCOMPARE(tab(popup), u"Loading..."_s);
    popup->browser()->stop();
    QTRY_COMPARE(tab(popup), u"About:blan..."_s);
    PopupScene::script(popup, u"1"_s);
    QCOMPARE(PopupScene::popups(), QList<BrowserWindow *>{popup});
}

void tst_emptywindows::emptyWindowIsNamed_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("empty") << QByteArray("window.open('')");
    QTest::newRow("no argument") << QByteArray("window.open()");
    QTest::newRow("blank") << QByteArray("window.open('about:blank')");
    QTest::newRow("script") << QByteArray("window.open('javascript:void 0')");
    QTest::newRow("mail") << QByteArray("window.open('mailto:a@b.example')");
    QTest::newRow("telephone") << QByteArray("window.open('tel:1')");
    QTest::newRow("file") << QByteArray("window.open('file:///etc/passwd')");
}

void tst_emptywindows::emptyWindowIsNamed()
{
    QFETCH(const QByteArray, code);
    BrowserWindow *opener = m_scene->openPage("<button id=b onclick=\"" + code
                                              + ";setTimeout(()=>window.done=1)\">b</button>");
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.done"_s).toInt() == 1);
    // It has a name, or it is gone.
    const auto loading = [this] {
        return std::any_of(
            m_scene->frame.tabs.tabs.begin(), m_scene->frame.tabs.tabs.end(),
            [](const FakeTabs::Tab &each) { return each.caption == "Loading..."_L1; });
    };
    QTRY_VERIFY(!loading());
    for (const BrowserWindow *popup : PopupScene::popups())
        QVERIFY(!popup->windowTitle().isEmpty());
}

void tst_emptywindows::textThatIsNoAddressNamesItsWindow_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("caption");
    QTest::newRow("sentence") << u"Dear all, (see below)"_s << u"Dear All, ..."_s;
    QTest::newRow("lines") << u"one\ntwo three"_s << QString();
    QTest::newRow("script") << u"javascript:alert(1)"_s << u"Javascript..."_s;
    QTest::newRow("blanks") << u"   "_s << u"About:blan..."_s;
    QTest::newRow("scheme alone") << u"http://"_s << u"Http://"_s;
    QTest::newRow("no host") << u"http:///"_s << u"Http:///"_s;
    QTest::newRow("unknown scheme") << u"nosuch:thing"_s << QString();
}

void tst_emptywindows::textThatIsNoAddressNamesItsWindow()
{
    QFETCH(const QString, text);
    QFETCH(const QString, caption);
    const BrowserWindow *form = m_scene->frame.open(text);
    QTRY_VERIFY(tab(form) != u"Loading..."_s);
    if (!caption.isEmpty())
        QCOMPARE(tab(form), caption);
    QVERIFY(!tab(form).isEmpty());
}

ORVANE_ENGINE_TEST_MAIN(tst_emptywindows)
#include "tst_emptywindows.moc"
