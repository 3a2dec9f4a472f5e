#include <QLabel>
#include <QMdiArea>
#include <QSignalSpy>
#include <QTest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineView>
#include <csignal>

#include "CrashNotice.h"
#include "EngineTest.h"
#include "PopupScene.h"
#include "ShownAddress.h"

using namespace Qt::StringLiterals;

/// A page that fills the screen: who it is stands there, the user is out whenever he wants, and it
/// does not come back by itself.
class tst_FullScreen : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void longHostIsNamedWhole();
    void outByKey_data();
    void outByKey();
    void outAsTheDesktopCloses();
    void staysOut();
    void thousandRequestsAreOne();
    void noticeStaysOverThePage();
    void doesNotComeFromBehind();
    void endsWithItsPage();
    void endsWithItsWindow();
    void endsWithItsProcess();
    void endsWhenItSleeps();

private:
    QWebEngineView *view() const
    {
        return QWebEngineView::forPage(PopupScene::control(m_form)->page());
    }
    QLabel *notice() const { return view()->findChild<QLabel *>(u"lblFullScreen"_s); }
    bool isInside() const { return m_form->isAncestorOf(view()); }
    QString title() const { return m_form->windowTitle(); }
    /// Its button fills the screen; the title says what came of it.
    void open(const QByteArray &script = {});
    void fill() const
    {
        PopupScene::click(m_form, u"b"_s);
        QTRY_COMPARE(title(), u"full"_s);
        QTRY_VERIFY(view()->isWindow() && view()->isFullScreen());
    }

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

void tst_FullScreen::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    open();
}

void tst_FullScreen::open(const QByteArray &script)
{
    m_form = m_scene->openPage(
        "<button id=b>fill</button><script>document.onfullscreenchange = () => document.title = "
        "document.fullscreenElement ? 'full' : 'back';"
        "b.onclick = () => document.body.requestFullscreen();"
            + script + "</script>",
        true);
    QVERIFY(QTest::qWaitForWindowActive(m_scene->frame.window()));
}

void tst_FullScreen::longHostIsNamedWhole()
{
    QString host;
    for (int i = 0; i < 12; ++i)
        host += u"part-of-a-very-long-name."_s;
    host = host.right(220) + u"end.localhost"_s;
    host.remove(0, host.indexOf(u'.') + 1);
    const QString url = m_scene->server.url(u"/opener"_s, host);
    m_form->browser()->navigate(url);
    QTRY_COMPARE(m_form->browser()->locationUrl(), url);
    PopupScene::waitUntilLoaded(m_form);
    fill();
    QVERIFY(notice() && notice()->isVisible());
    QVERIFY(view()->rect().contains(notice()->geometry()));
    QString said = notice()->text();
    QVERIFY2(said.remove(QChar(0x200b)).contains(shownSite(QUrl(url))), qPrintable(said));
    QVERIFY(said.contains("end.localhost"_L1));
    // All of it has room.
    QVERIFY(notice()->height() >= notice()->heightForWidth(notice()->width()));
    QVERIFY(notice()->minimumSizeHint().width() <= notice()->width());
}

void tst_FullScreen::outByKey_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Esc") << int(Qt::Key_Escape);
    QTest::newRow("F11") << int(Qt::Key_F11);
}

/// Also from a page that wants the keys for itself.
void tst_FullScreen::outByKey()
{
    QFETCH(int, key);
    open("addEventListener('keydown', e => { e.preventDefault(); e.stopImmediatePropagation() }, "
         "true)");
    fill();
    QTest::keyClick(view(), Qt::Key(key));
    QTRY_COMPARE(title(), u"back"_s);
    QVERIFY(isInside());
    QVERIFY(!notice());
    QTRY_VERIFY(m_scene->frame.window()->isVisible());
    // Else carets and what has the keyboard would not be shown, until the user has been elsewhere.
    QTRY_VERIFY(m_scene->frame.window()->isActiveWindow());
}

void tst_FullScreen::outAsTheDesktopCloses()
{
    fill();
    const QPointer<QWebEngineView> before = view();
    view()->close();
    QTRY_COMPARE(title(), u"back"_s);
    QVERIFY(before && isInside() && before->isVisible());
    QCOMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
}

void tst_FullScreen::staysOut()
{
    open("let asked = 0; const again = () => { ++asked; document.body.requestFullscreen()"
         ".catch(() => 0) }; document.addEventListener('fullscreenchange', () => "
         "document.fullscreenElement || (again(), setInterval(again, 5)));"
         "addEventListener('keydown', again); addEventListener('keyup', again)");
    fill();
    QTest::keyClick(view(), Qt::Key_Escape);
    QTRY_COMPARE(title(), u"back"_s);
    QTRY_VERIFY(PopupScene::script(m_form, u"asked"_s).toInt() > 20);
    QCOMPARE(title(), u"back"_s);
    QVERIFY(isInside());
}

void tst_FullScreen::thousandRequestsAreOne()
{
    open("b.onclick = () => { for (let i = 0; i < 1000; ++i) "
         "document.body.requestFullscreen().catch(() => 0) }");
    const qsizetype windows = QApplication::topLevelWidgets().size();
    fill();
    QCOMPARE(view()->findChildren<QLabel *>(u"lblFullScreen"_s).size(), 1);
    QCOMPARE(QApplication::topLevelWidgets().size(), windows + 1);
    QTest::keyClick(view(), Qt::Key_Escape);
    QTRY_COMPARE(title(), u"back"_s);
    QTRY_VERIFY(isInside());
    QCOMPARE(QApplication::topLevelWidgets().size(), windows);
}

void tst_FullScreen::noticeStaysOverThePage()
{
    open("b.onclick = () => { document.body.requestFullscreen(); document.body.insertAdjacentHTML("
         "'beforeend', '<dialog id=d style=\"width:100%;height:100%;margin:0\">x</dialog>'); "
         "d.showModal() }");
    fill();
    QVERIFY(notice() && notice()->isVisible());
    QCOMPARE(view()->childAt(notice()->geometry().center()), view()->focusProxy());
    QCOMPARE(view()->children().indexOf(notice()), view()->children().size() - 1);
}

/// A click counts for some seconds, in which the user may have gone elsewhere.
void tst_FullScreen::doesNotComeFromBehind()
{
    open("b.onclick = () => { document.title = 'waits'; document.onvisibilitychange = () => "
         "document.body.requestFullscreen().catch(e => document.title = e) }");
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(title(), u"waits"_s);
    const QSignalSpy requests(view()->page(), &QWebEnginePage::fullScreenRequested);
    m_scene->server.page("/other", "<title>other</title>");
    const BrowserWindow *other = m_scene->frame.open(m_scene->server.url(u"/other"_s), true);
    QTRY_COMPARE(other->windowTitle(), u"other"_s);
    QTRY_VERIFY(!requests.isEmpty());
    QTRY_VERIFY(isInside());
    QCOMPARE(notice(), nullptr);
    QVERIFY(title() != u"full"_s || !view()->isWindow());
}

void tst_FullScreen::endsWithItsPage()
{
    m_scene->server.page("/b", "<title>b</title>");
    fill();
    PopupScene::script(m_form, u"location = '/b'; 1"_s);
    QTRY_COMPARE(title(), u"b"_s);
    QTRY_VERIFY(isInside());
}

void tst_FullScreen::endsWithItsWindow()
{
    fill();
    const QPointer<QWebEngineView> filling = view();
    m_form->unload();
    QTRY_VERIFY(!filling);
    QTRY_VERIFY(!m_form);
}

void tst_FullScreen::endsWithItsProcess()
{
    fill();
    ::kill(pid_t(view()->page()->renderProcessPid()), SIGKILL);
    QTRY_VERIFY(isInside());
    QTRY_VERIFY(m_form->findChild<CrashNotice *>());
    QVERIFY(m_form->findChild<CrashNotice *>()->isVisible());
}

void tst_FullScreen::endsWhenItSleeps()
{
    fill();
    const qsizetype windows = QApplication::topLevelWidgets().size();
    m_form->fallAsleep();
    QVERIFY(m_form->isAsleep());
    QTRY_COMPARE(QApplication::topLevelWidgets().size(), windows - 1);
    m_form->wake();
    QTRY_COMPARE(title(), u"opener"_s);
    PopupScene::waitUntilLoaded(m_form);
    QTRY_VERIFY(isInside());
}

ORVANE_ENGINE_TEST_MAIN(tst_FullScreen)
#include "tst_fullscreen.moc"
