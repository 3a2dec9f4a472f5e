// Windows that pages ask for, move and close, in real browser windows.
#include "EngineTest.h"
#include "FakeFrame.h"
#include "PageAsks.h"
#include "QtWebBrowser.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QPointer>

#include <QWebEngineHistory>

using namespace Qt::StringLiterals;

class tst_popups : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void windowIsOpenedInPlace();
    void requestedSizeFitsTheWindow();
    void killedWindowIsNotMade();
    void scriptMovesTheControl();
    void closingIsAskedAndRefused();
    void closingIsAskedAndGranted();
    void closedOpenerLeavesTheWindow();
    void blankWindowIsUsable();

private:
    QString script(const BrowserWindow *form, const QString &code);
    BrowserWindow *openOpener();
    BrowserWindow *popUp(const QString &features, const QString &path = u"/popup"_s);
    static QtWebBrowser *browserOf(const BrowserWindow *form)
    {
        return static_cast<QtWebBrowser *>(form->browser());
    }

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<FakeFrame> m_frame;
};

void tst_popups::init()
{
    m_server = std::make_unique<TestServer>();
    m_server->page("/opener", "<title>Opener</title>o");
    m_server->page("/popup", "<title>Popup</title>p");
    m_frame = std::make_unique<FakeFrame>();
}

void tst_popups::cleanup()
{
    m_frame.reset();
    m_server.reset();
}

QString tst_popups::script(const BrowserWindow *form, const QString &code)
{
    QString result;
    bool answered = false;
    browserOf(form)->page()->runJavaScript(code, [&](const QVariant &value) {
        result = value.toString();
        answered = true;
    });
    [&] { QTRY_VERIFY(answered); }();
    return result;
}

BrowserWindow *tst_popups::openOpener()
{
    BrowserWindow *form = m_frame->open(m_server->url(u"/opener"_s), true);
    [form] { QTRY_COMPARE(form->windowTitle(), u"Opener"_s); }();
    return form;
}

BrowserWindow *tst_popups::popUp(const QString &features, const QString &path)
{
    const BrowserWindow *opener = openOpener();
    script(opener, u"w = window.open('%1', '_blank', '%2'); 1"_s.arg(path, features));
    [] { QTRY_COMPARE(browserForms().size(), 2); }();
    return browserForms().last();
}

void tst_popups::windowIsOpenedInPlace()
{
    BrowserWindow *popup = popUp({});
    QTRY_COMPARE(popup->windowTitle(), u"Popup"_s);
    QVERIFY(!popup->isPopup);
    QCOMPARE(browserOf(popup)->locationUrl(), m_server->url(u"/popup"_s));
    QCOMPARE(script(popup, u"String(!!window.opener)"_s), u"true"_s);
    QCOMPARE(m_frame->tabs.tabs.size(), 2);
}

void tst_popups::requestedSizeFitsTheWindow()
{
    BrowserWindow *popup = popUp(u"width=320,height=240,left=40,top=30"_s);
    QTRY_COMPARE(popup->windowTitle(), u"Popup"_s);
    QVERIFY(!popup->isMaximized());
    QCOMPARE(popup->geometry(), QRect(40, 30, 320 + 57, 240 + 59));
    const QRect control = browserOf(popup)->widget()->geometry();
    QCOMPARE(control.topLeft(), QPoint(0, 0));
    QCOMPARE(control.width(), popup->widget()->width());
}

void tst_popups::blankWindowIsUsable()
{
    BrowserWindow *popup = popUp({}, {});
    // The empty document that it begins with is no navigation.
    QVERIFY(popup->isPopup);
    const BrowserWindow *opener = browserForms().first();
    script(opener, u"w.document.body.textContent = 'written'; 1"_s);
    QCOMPARE(script(popup, u"document.body.textContent"_s), u"written"_s);
}

void tst_popups::killedWindowIsNotMade()
{
    const BrowserWindow *opener = openOpener();
    m_frame->menuItem(u"mnuToolsKillPopUps"_s)->setChecked(true);
    script(opener, u"w = window.open('/popup'); 1"_s);
    QTRY_COMPARE(script(opener, u"String(w === null || w.closed)"_s), u"true"_s);
    QCOMPARE(browserForms().size(), 1);
    QCOMPARE(m_server->count("/popup"), 0);
}

void tst_popups::scriptMovesTheControl()
{
    BrowserWindow *popup = popUp(u"width=400,height=300"_s);
    QTRY_COMPARE(popup->windowTitle(), u"Popup"_s);
    QTRY_VERIFY(!browserOf(popup)->isBusy());
    const QRect window = popup->geometry();
    script(popup, u"resizeTo(222, 111); 1"_s);
    QTRY_COMPARE(browserOf(popup)->widget()->size(), QSize(222, 111));
    QCOMPARE(popup->geometry(), window);
    popup->layOut();
    QCOMPARE(browserOf(popup)->widget()->width(), popup->widget()->width());
}

void tst_popups::closingIsAskedAndRefused()
{
    BrowserWindow *popup = popUp({});
    QTRY_COMPARE(popup->windowTitle(), u"Popup"_s);
    script(popup, u"setTimeout(() => window.close(), 0); 1"_s);
    QTRY_COMPARE(PageAsks::countIn(popup), 1);
    PageAsks::press(PageAsks::no(PageAsks::shownIn(popup)));
    QTRY_COMPARE(PageAsks::countIn(popup), 0);
    QCOMPARE(browserForms().size(), 2);
    QCOMPARE(script(popup, u"document.title"_s), u"Popup"_s);
}

void tst_popups::closingIsAskedAndGranted()
{
    const QPointer<BrowserWindow> popup = popUp({});
    QTRY_COMPARE(popup->windowTitle(), u"Popup"_s);
    script(popup, u"setTimeout(() => window.close(), 0); 1"_s);
    QTRY_COMPARE(PageAsks::countIn(popup), 1);
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(popup)));
    QTRY_VERIFY(!popup);
    QCOMPARE(m_frame->tabs.tabs.size(), 1);
}

void tst_popups::closedOpenerLeavesTheWindow()
{
    const BrowserWindow *popup = popUp({});
    QTRY_COMPARE(popup->windowTitle(), u"Popup"_s);
    browserForms().first()->unload();
    QTRY_COMPARE(m_frame->area->subWindowList().size(), 1);
    QCOMPARE(script(popup, u"document.title"_s), u"Popup"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_popups)
#include "tst_popups.moc"
