// Pages that ask for windows without end, in the whole program.
#include "AllCommands.h"
#include "BlockedList.h"
#include "BrowserWindow.h"
#include "EngineTest.h"
#include "Forms.h"
#include "MainWindow.h"
#include "PageAsks.h"
#include "PopupScene.h"
#include "QtWebBrowser.h"
#include "TempAppFolder.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QAction>
#include <QMdiArea>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTestEventLoop>

using namespace Qt::StringLiterals;

class tst_popupstorms : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void killPopupsRefusesAll();
    void smartKillerClosesAll();
    void closeAllEndsAStormOfPopupsThatCloseThemselves();
    void withoutSwitchesTheRestWaitsForOneQuestion();
    void answerYesOpensTheRest();
    void hoppingHostsBeginsNothingAnew();
    void clickedLinkToAnotherSiteBeginsAnew();
    void pageThatOpensItselfAgainIsGotRidOf();

private:
    void start(const QByteArray &script);
    void verifyMenuAnswers();
    void closeAll();
    void proveNothingElseOpens();
    QList<PageQuestionBox *> questions() const
    {
        QList<PageQuestionBox *> all = m_frame->findChildren<PageQuestionBox *>();
        all.removeIf([](const PageQuestionBox *each) { return each->isHidden(); });
        return all;
    }
    int told(const QString &expression);

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_popupstorms::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_server = std::make_unique<TestServer>();
    QVERIFY(m_folder->isValid() && m_server->isListening());
    QVERIFY(m_folder->setSetting(u"Options"_s, u"Show-Splash"_s, u"0"_s));
    m_server->page("/p", "<title>popup</title>");
    m_frame = std::make_unique<MainWindow>();
    registerAllCommands(*m_frame);
}

void tst_popupstorms::cleanup()
{
    if (m_frame)
        closeAll();
    m_frame->menuItem(u"mnuToolsKillPopUps"_s)->setChecked(false);
    m_frame.reset();
    m_server.reset();
    m_folder.reset();
}

/// Loads the frame on a page with this script; `storm(n)` asks for n windows and then sets `done`.
void tst_popupstorms::start(const QByteArray &script)
{
    m_server->page("/opener",
                   "<title>opener</title><body><script>got=0;done=0;"
                   "storm=n=>{for(let i=0;i<n;++i)if(window.open('about:blank'))++got;"
                   "done=1};"
                   "onload=()=>setTimeout(()=>{"
                       + script + "},1)</script>");
    m_frame->setCommandLine(m_server->url(u"/opener"_s));
    m_frame->load();
    QTRY_VERIFY(!browserForms().isEmpty());
}

void tst_popupstorms::verifyMenuAnswers()
{
    QMenu *menu = m_frame->menuItem(u"mnuTools"_s)->menu();
    menu->popup(m_frame->mapToGlobal(QPoint(20, 20)));
    QTRY_VERIFY(menu->isVisible());
    menu->close();
    QTRY_VERIFY(!menu->isVisible());
}

void tst_popupstorms::closeAll()
{
    m_frame->run(u"mnuFileCloseAll"_s);
    QTRY_COMPARE(browserForms().size(), 0);
    QTRY_VERIFY(m_frame->findChildren<BrowserWindow *>().isEmpty());
}

/// After all windows are closed: whatever was still on its way has come by the time that another
/// page is there.
void tst_popupstorms::proveNothingElseOpens()
{
    m_frame->openBrowserWindow(m_server->url(u"/p"_s), WindowState::AsOthers);
    QTRY_COMPARE(browserForms().size(), 1);
    QTRY_COMPARE(browserForms().first()->windowTitle(), u"popup"_s);
    QCOMPARE(browserForms().size(), 1);
}

/// A number of the first window's page.
int tst_popupstorms::told(const QString &expression)
{
    auto *control = qobject_cast<QtWebBrowser *>(browserForms().first()->browser());
    if (!control || !control->page())
        return 0;
    struct Answer {
        // The page waits for this program at each window, so events are dealt with as they come.
        QTestEventLoop loop;
        int number = 0;
    };
    // The answer may come when nobody waits for it any longer.
    const auto answer = std::make_shared<Answer>();
    control->page()->runJavaScript(expression, [answer](const QVariant &value) {
        answer->number = value.toInt();
        answer->loop.exitLoop();
    });
    answer->loop.enterLoopMSecs(60000);
    [&] { QVERIFY(!answer->loop.timeout()); }();
    return answer->number;
}

void tst_popupstorms::killPopupsRefusesAll()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"Kill-Popups"_s, u"True"_s));
    start("storm(1000)");
    verifyMenuAnswers();
    QTRY_COMPARE_WITH_TIMEOUT(told(u"window.done"_s), 1, 60000);
    QCOMPARE(told(u"window.got"_s), 0);
    QCOMPARE(browserForms().size(), 1);
    QVERIFY(questions().isEmpty());
}

void tst_popupstorms::smartKillerClosesAll()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"SmartPopupKiller"_s, u"True"_s));
    QVERIFY(m_folder->write(u"AppData/PopupURLs.txt"_s, "about:*\r\n"));
    // More than a page may leave open without a question; those that are gone do not count.
    start("storm(60)");
    verifyMenuAnswers();
    QTRY_COMPARE_WITH_TIMEOUT(told(u"window.done"_s), 1, 120000);
    QTRY_COMPARE_WITH_TIMEOUT(browserForms().size(), 1, 60000);
    QVERIFY(questions().isEmpty());
    verifyMenuAnswers();
}

void tst_popupstorms::closeAllEndsAStormOfPopupsThatCloseThemselves()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"SmartPopupKiller"_s, u"True"_s));
    QVERIFY(m_folder->write(u"AppData/PopupURLs.txt"_s, "about:*\r\n"));
    int asked = 0;
    QObject counting;
    start("storm(1000)");
    const auto *control = qobject_cast<QtWebBrowser *>(browserForms().first()->browser());
    connect(control->page(), &QWebEnginePage::newWindowRequested, &counting, [&] { ++asked; });
    // No script of the page answers in the middle of its storm.
    QTRY_VERIFY_WITH_TIMEOUT(asked > 20, 60000);
    verifyMenuAnswers();
    closeAll();
    proveNothingElseOpens();
}

void tst_popupstorms::withoutSwitchesTheRestWaitsForOneQuestion()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"SmartPopupKiller"_s, u"False"_s));
    start("storm(1000)");
    QTRY_COMPARE_WITH_TIMEOUT(questions().size(), 1, 60000);
    verifyMenuAnswers();
    QTRY_COMPARE_WITH_TIMEOUT(told(u"window.done"_s), 1, 120000);
    QCOMPARE(browserForms().size(), 51);
    QCOMPARE(questions().size(), 1);
    QVERIFY(browserForms().first()->isAncestorOf(questions().first()));
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(PageAsks::askerOf(questions().first()),
             u"http://127.0.0.1:%1"_s.arg(m_server->port()));
    PageAsks::press(PageAsks::no(questions().first()));
    QTRY_VERIFY(questions().isEmpty());
    QCOMPARE(browserForms().size(), 51);
    closeAll();
}

void tst_popupstorms::answerYesOpensTheRest()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"SmartPopupKiller"_s, u"False"_s));
    start("storm(55)");
    QTRY_COMPARE_WITH_TIMEOUT(questions().size(), 1, 60000);
    QTRY_COMPARE_WITH_TIMEOUT(told(u"window.done"_s), 1, 60000);
    PageAsks::press(PageAsks::yes(questions().first()));
    QTRY_COMPARE_WITH_TIMEOUT(browserForms().size(), 56, 60000);
    verifyMenuAnswers();
}

void tst_popupstorms::hoppingHostsBeginsNothingAnew()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"SmartPopupKiller"_s, u"False"_s));
    // Each site opens 15 windows and goes on to the next; the first number stands in the host.
    m_server->page("/hop",
                   "<body><script>n=+(location.hostname.match(/\\d+/)||[0])[0];"
                   "onload=()=>setTimeout(()=>{for(let i=0;i<15;++i)window.open('about:blank');"
                   "if(n<5)location=`http://h${n+1}.localhost:${location.port}/hop`;"
                   "else document.title='end'},1)</script>");
    m_frame->setCommandLine(m_server->url(u"/hop"_s, u"h0.localhost"_s));
    m_frame->load();
    QTRY_VERIFY(!browserForms().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(browserForms().first()->windowTitle(), u"end"_s, 120000);
    QTRY_COMPARE_WITH_TIMEOUT(questions().size(), 1, 60000);
    QCOMPARE(browserForms().size(), 51);
    verifyMenuAnswers();
}

void tst_popupstorms::clickedLinkToAnotherSiteBeginsAnew()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"SmartPopupKiller"_s, u"False"_s));
    m_server->page("/more",
                   "<title>more</title><script>onload=()=>setTimeout(()=>{"
                   "window.open('about:blank')},1)</script>");
    start("document.body.innerHTML=`<a id=a href='http://other.localhost:${location.port}/more'>"
          "link</a>`;storm(51)");
    QTRY_COMPARE_WITH_TIMEOUT(questions().size(), 1, 60000);
    QTRY_COMPARE_WITH_TIMEOUT(told(u"window.done"_s), 1, 60000);
    PageAsks::press(PageAsks::no(questions().first()));
    QTRY_VERIFY(questions().isEmpty());
    QCOMPARE(browserForms().size(), 51);
    BrowserWindow *opener = browserForms().first();
    m_frame->findChild<QMdiArea *>()->setActiveSubWindow(opener);
    PopupScene::click(opener, u"a"_s);
    QTRY_COMPARE(opener->windowTitle(), u"more"_s);
    QTRY_COMPARE(browserForms().size(), 52);
}

void tst_popupstorms::pageThatOpensItselfAgainIsGotRidOf()
{
    m_server->page("/again",
                   "<title>again</title><script>"
                   "onunload=onpagehide=()=>window.open('/again');"
                   "setInterval(()=>{if(opener&&opener.closed)window.open('/again')},5)"
                   "</script>");
    start("w=null;setInterval(()=>{if(!w||w.closed)w=window.open('/again')},5)");
    for (int round = 0; round < 3; ++round) {
        QTRY_COMPARE(browserForms().size(), 2);
        QTRY_COMPARE(browserForms().at(1)->windowTitle(), u"again"_s);
        browserForms().at(1)->unload();
    }
    QTRY_COMPARE(browserForms().size(), 2);
    closeAll();
    proveNothingElseOpens();
}

ORVANE_ENGINE_TEST_MAIN(tst_popupstorms)
#include "tst_popupstorms.moc"
