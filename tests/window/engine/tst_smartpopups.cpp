// Popups that begin with an address of the user's list close themselves; all others stay.
#include "EngineTest.h"
#include "EngineVersion.h"
#include "PopupScene.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {
/// The fields of a process's state after its name; empty when it is gone.
QList<QByteArray> stateOf(const QString &process)
{
    QFile file("/proc/"_L1 + process + "/stat"_L1);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray line = file.readAll();
    return line.mid(line.lastIndexOf(')') + 2).split(' ');
}

bool isOurs(QString process)
{
    const QString own = QString::number(QCoreApplication::applicationPid());
    while (process.toInt() > 1) {
        if (process == own)
            return true;
        process = QString::fromLatin1(stateOf(process).value(1));
    }
    return false;
}

/// Those that start pages' processes among them: their command line is the same.
bool isForPages(const QByteArray &commandLine)
{
    return commandLine.contains("--type=renderer") || commandLine.contains("--type=zygote");
}

/// The engine's processes for pages that this program has running.
int renderers()
{
    int count = 0;
    const QStringList processes = QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &process : processes) {
        QFile file("/proc/"_L1 + process + "/cmdline"_L1);
        if (file.open(QIODevice::ReadOnly) && isForPages(file.readAll()) && isOurs(process))
            ++count;
    }
    return count;
}
}

class tst_smartpopups : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void matchLeavesNothing();
    void matchIsNeverShown();
    void noMatchComesUpAsItWasAskedFor();
    void filledByItsOpenerItComesUp();
    void emptyWindowSentOnLaterTakesNothing();
    void unaskedWindowComesUpWithWhatIsWrittenIntoIt();
    void maximizedOpenerStaysMaximized();
    void focusInTheFrameStaysThere();
    void noMatchStaysAlsoLater();
    void emptyListLetsEverythingOpen();
    void switchedOffLetsEverythingOpen();
    void killPopupsWins();
    void starBlocksEveryPopup();
    void letterCaseCounts();
    void redirectTargetsAreNotTested();
    void emptyWindowIsTestedWhenItIsSentSomewhere();
    void explicitAboutBlankIsAFirstAddress();
    void aboutBlankOnTheListCloses();
    void listOnDiskCountsFromTheNextLoad();
    void usersWindowsAreNotTested();
    void closedPopupIsClosedForItsOpener();

private:
    BrowserWindow *openerOf(const QByteArray &code, bool maximized = false);
    void proveNothingElseOpens(const BrowserWindow *opener);

    std::unique_ptr<PopupScene> m_scene;
};

void tst_smartpopups::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->smart();
    m_scene->server.page("/ads/x", "<title>ad</title>");
    m_scene->server.page("/p", "<title>popup</title>");
    m_scene->server.page("/marker", "<title>marker</title>");
    m_scene->server.redirect("/go", "/ads/x");
}

BrowserWindow *tst_smartpopups::openerOf(const QByteArray &code, bool maximized)
{
    return m_scene->openPage("<button id=b onclick=\"w=" + code
                                 + ";window.done=1\">b</button>"
                                   "<p><button id=m onclick=\"window.open('/marker')\">m</button>",
                             maximized);
}

/// What was asked for is dealt with in order, so a later window that is there proves that nothing
/// is on its way any more.
void tst_smartpopups::proveNothingElseOpens(const BrowserWindow *opener)
{
    QTRY_COMPARE(PopupScene::popups().size(), 0);
    PopupScene::click(opener, u"m"_s);
    QTRY_COMPARE(PopupScene::popups().size(), 1);
    QTRY_COMPARE(PopupScene::popups().first()->windowTitle(), u"marker"_s);
    QCOMPARE(m_scene->server.count("/ads/x"), 0);
}

void tst_smartpopups::matchLeavesNothing()
{
    m_scene->block(u"*/ads/*\r\n"_s);
    BrowserWindow *opener = openerOf("window.open('/ads/x')");
    const int processes = renderers();
    QVERIFY(processes > 0);
    QWidget *focus = QWebEngineView::forPage(PopupScene::control(opener)->page())->focusProxy();
    PopupScene::click(opener, u"b"_s);
    QTRY_COMPARE(PopupScene::script(opener, u"window.done"_s).toInt(), 1);
    QTRY_VERIFY(PopupScene::script(opener, u"w.closed"_s).toBool());
    QTRY_COMPARE(m_scene->frame.area->subWindowList().size(), 1);
    QCOMPARE(m_scene->frame.tabs.tabs.size(), 1);
    QCOMPARE(m_scene->frame.activeChild(), opener);
    QVERIFY(m_scene->frame.tabOf(opener).pressed);
    QTRY_COMPARE(QApplication::focusWidget(), focus);
    QTRY_VERIFY(renderers() <= processes);
    QCOMPARE(m_scene->frame.addressText, m_scene->server.url(u"/opener"_s));
    QVERIFY(m_scene->frame.window()->findChildren<QDialog *>().isEmpty());
    proveNothingElseOpens(opener);
}

void tst_smartpopups::matchIsNeverShown()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener = openerOf("window.open('/ads/x','','width=300,height=200')");
    const QSignalSpy activated(m_scene->frame.area, &QMdiArea::subWindowActivated);
    const QSignalSpy focused(qApp, &QApplication::focusChanged);
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.w && w.closed"_s).toBool());
    proveNothingElseOpens(opener);
    // That of the window that proves it.
    QVERIFY(focused.size() <= 2);
    QTRY_COMPARE(m_scene->frame.area->subWindowList().size(), 2);
    QCOMPARE(activated.first().first().value<QMdiSubWindow *>(), PopupScene::popups().first());
}

void tst_smartpopups::noMatchComesUpAsItWasAskedFor()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener =
        openerOf("window.open('/p','','left=20,top=30,width=320,height=240')", true);
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"popup"_s);
    QVERIFY(!popup->isMaximized());
    QCOMPARE(popup->geometry(), QRect(20, 30, 320 + 57, 240 + 59));
    QCOMPARE(m_scene->frame.activeChild(), popup);
    QTRY_VERIFY(PopupScene::script(popup, u"innerWidth"_s).toInt() > 300);
}

void tst_smartpopups::filledByItsOpenerItComesUp()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener =
        openerOf("window.open('');w.document.write('<title>Written</title>text')");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"Written"_s);
    QTRY_COMPARE(m_scene->frame.activeChild(), popup);
}

void tst_smartpopups::emptyWindowSentOnLaterTakesNothing()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener =
        m_scene->openPage("<script>go=()=>setTimeout(()=>{w=window.open('')},1)</script>");
    const QSignalSpy activated(m_scene->frame.area, &QMdiArea::subWindowActivated);
    PopupScene::script(opener, u"go()"_s);
    QTRY_COMPARE(opener->findChildren<BrowserWindow *>().size(), 1);
    const QPointer<BrowserWindow> popup = opener->findChild<BrowserWindow *>();
    PopupScene::script(opener, u"w.location='/ads/x'; 1"_s);
    QTRY_VERIFY(!popup);
    QCOMPARE(activated.size(), 0);
    QCOMPARE(m_scene->frame.activeChild(), opener);
}

void tst_smartpopups::unaskedWindowComesUpWithWhatIsWrittenIntoIt()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener =
        m_scene->openPage("<script>go=()=>setTimeout(()=>{w=window.open('')},1)</script>");
    PopupScene::script(opener, u"go()"_s);
    QTRY_COMPARE(opener->findChildren<BrowserWindow *>().size(), 1);
    QVERIFY(PopupScene::popups().isEmpty());
    PopupScene::script(opener, u"w.document.body.textContent='written'; 1"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QVERIFY(popup->isVisible());
    QCOMPARE(m_scene->frame.activeChild(), popup);
    QCOMPARE(PopupScene::script(popup, u"document.body.textContent"_s).toString(), u"written"_s);
}

void tst_smartpopups::maximizedOpenerStaysMaximized()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener = openerOf("window.open('/ads/x')", true);
    QVERIFY(opener->isMaximized());
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.w && w.closed"_s).toBool());
    QTRY_VERIFY(opener->isMaximized());
    QCOMPARE(m_scene->frame.activeChild(), opener);
    proveNothingElseOpens(opener);
}

void tst_smartpopups::focusInTheFrameStaysThere()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener =
        m_scene->openPage("<script>go=()=>setTimeout(()=>{w=window.open('/ads/x')},1)</script>");
    auto *main = qobject_cast<QMainWindow *>(m_scene->frame.window());
    auto *field = new QLineEdit(main);
    field->show();
    main->activateWindow();
    field->setFocus();
    QTRY_COMPARE(QApplication::focusWidget(), field);
    PopupScene::script(opener, u"go()"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.w && w.closed"_s).toBool());
    QTRY_COMPARE(QApplication::focusWidget(), field);
    QCOMPARE(m_scene->frame.activeChild(), opener);
}

void tst_smartpopups::noMatchStaysAlsoLater()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener = openerOf("window.open('/p')");
    PopupScene::click(opener, u"b"_s);
    QPointer<BrowserWindow> popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"popup"_s);
    QVERIFY(!popup->isPopup);
    PopupScene::script(popup, u"location='/ads/x'; 1"_s);
    QTRY_COMPARE(popup->windowTitle(), u"ad"_s);
}

void tst_smartpopups::emptyListLetsEverythingOpen()
{
    BrowserWindow *opener = openerOf("window.open('/ads/x')");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"ad"_s);
}

void tst_smartpopups::switchedOffLetsEverythingOpen()
{
    m_scene->block(u"*"_s);
    m_scene->smart(false);
    BrowserWindow *opener = openerOf("window.open('/ads/x')");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"ad"_s);
}

void tst_smartpopups::killPopupsWins()
{
    m_scene->block(u"*/ads/*"_s);
    m_scene->kill();
    BrowserWindow *opener = openerOf("window.open('/ads/x')");
    const QSignalSpy activated(m_scene->frame.area, &QMdiArea::subWindowActivated);
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.done && (!w || w.closed)"_s).toBool());
    QCOMPARE(activated.size(), 0);
    m_scene->kill(false);
    proveNothingElseOpens(opener);
}

void tst_smartpopups::starBlocksEveryPopup()
{
    m_scene->block(u"*"_s);
    BrowserWindow *opener = openerOf("window.open('/p')");
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.w && w.closed"_s).toBool());
    QCOMPARE(m_scene->server.count("/p"), 0);
    QTRY_COMPARE(PopupScene::popups().size(), 0);
}

void tst_smartpopups::letterCaseCounts()
{
    m_scene->block(u"*/ADS/*"_s);
    BrowserWindow *opener = openerOf("window.open('/ads/x')");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"ad"_s);
}

void tst_smartpopups::redirectTargetsAreNotTested()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener = openerOf("window.open('/go')");
    PopupScene::click(opener, u"b"_s);
    BrowserWindow *popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"ad"_s);
}

void tst_smartpopups::emptyWindowIsTestedWhenItIsSentSomewhere()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener = openerOf("window.open('')");
    PopupScene::click(opener, u"b"_s);
    QPointer<BrowserWindow> popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QVERIFY(popup->isPopup);
    PopupScene::script(opener, u"w.location='/ads/x'; 1"_s);
    QTRY_VERIFY(!popup);
    proveNothingElseOpens(opener);
}

void tst_smartpopups::explicitAboutBlankIsAFirstAddress()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener = openerOf("window.open('about:blank')");
    PopupScene::click(opener, u"b"_s);
    QPointer<BrowserWindow> popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    if (emptyWindowsAreBlank) {
        // Nothing tells it from an empty one, which does not count.
        PopupScene::script(opener, u"w.location='/ads/x'; 1"_s);
        QTRY_VERIFY(!popup);
        proveNothingElseOpens(opener);
        return;
    }
    QTRY_VERIFY(!popup->isPopup);
    PopupScene::script(opener, u"w.location='/ads/x'; 1"_s);
    QTRY_COMPARE(popup->windowTitle(), u"ad"_s);
}

void tst_smartpopups::aboutBlankOnTheListCloses()
{
    m_scene->block(u"about:blank"_s);
    BrowserWindow *opener = openerOf("window.open('about:blank')");
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.w && w.closed"_s).toBool());
    proveNothingElseOpens(opener);
}

void tst_smartpopups::listOnDiskCountsFromTheNextLoad()
{
    m_scene->block(u"nothing"_s);
    QVERIFY(m_scene->folder.write(u"AppData/PopupURLs.txt"_s, "*/p\n"));
    BrowserWindow *opener = openerOf("window.open('/p')");
    PopupScene::click(opener, u"b"_s);
    QPointer<BrowserWindow> popup = PopupScene::waitForPopup();
    QVERIFY(popup);
    QTRY_COMPARE(popup->windowTitle(), u"popup"_s);
    popup->unload();
    QTRY_VERIFY(!popup);
    loadBlockedList();
    PopupScene::script(opener, u"w=null; window.done=0"_s);
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.done && w.closed"_s).toBool());
    proveNothingElseOpens(opener);
}

void tst_smartpopups::usersWindowsAreNotTested()
{
    m_scene->block(u"*"_s);
    BrowserWindow *form = m_scene->frame.open(m_scene->server.url(u"/ads/x"_s));
    QTRY_COMPARE(form->windowTitle(), u"ad"_s);
    form->browser()->navigate(m_scene->server.url(u"/p"_s));
    QTRY_COMPARE(form->windowTitle(), u"popup"_s);
}

void tst_smartpopups::closedPopupIsClosedForItsOpener()
{
    m_scene->block(u"*/ads/*"_s);
    BrowserWindow *opener = openerOf("window.open('/ads/x')");
    PopupScene::click(opener, u"b"_s);
    QTRY_VERIFY(PopupScene::script(opener, u"window.w && w.closed"_s).toBool());
    PopupScene::script(opener, u"w.location='/p'; 1"_s);
    proveNothingElseOpens(opener);
    QCOMPARE(m_scene->server.count("/p"), 0);
}

ORVANE_ENGINE_TEST_MAIN(tst_smartpopups)
#include "tst_smartpopups.moc"
