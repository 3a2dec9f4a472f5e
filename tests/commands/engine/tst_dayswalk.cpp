// A day with the program: one user, in one frame, by keys and clicks, on real servers.
#include <QComboBox>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QWebEngineView>

#include <csignal>

#include "../PageDialogs.h"
#include "../Session.h"
#include "CrashNotice.h"
#include "DeskFile.h"
#include "EndRequests.h"
#include "EngineTest.h"
#include "LastDesk.h"
#include "PageAsks.h"
#include "PopupScene.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";
const QStringList results{u"/result1"_s, u"/result2"_s, u"/result3"_s};

/// As the user finds it the day after: what comes of the desk is for him to say.
int runProgram(int argc, char **argv)
{
    chooseRenderingBackend();
    QApplication app(argc, argv);
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    startEngine();
    int status = 0;
    {
        MainWindow frame;
        followEndRequests(frame);
        registerAllCommands(frame);
        LastDesk desk(frame);
        frame.setCommandLine(QCoreApplication::arguments().value(1));
        startUp(frame);
        desk.offer();
        status = QCoreApplication::exec();
    }
    stopEngine();
    return status;
}

/// Long enough for the engine to fetch it in pieces.
QByteArray report()
{
    QByteArray bytes;
    while (bytes.size() < 700'000)
        bytes += QByteArray::number(bytes.size()) + '\n';
    return bytes;
}
}

class tst_DaysWalk : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_session.reset(); }

    // Each goes on where the one before ended.
    void searchesWithTheChosenEngine();
    void opensThreeResultsSideBySide();
    void signsInByAForm();
    void signsInAsTheServerAsks();
    void downloadsAFile();
    void printsAPage();
    void watchesFullScreen();
    void reloadsAPageThatCrashed();
    void reopensAClosedWindow();
    void findsTheDeskAgainAfterAnUncleanEnd();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    void serveSearch();
    void serveSignIns();
    void serveMedia();
    void press(int key, Qt::KeyboardModifiers keys = {}) const
    {
        m_session->frame->activateWindow();
        QTRY_VERIFY(m_session->frame->isActiveWindow());
        QWindow *frame = m_session->frame->windowHandle();
        QTest::simulateEvent(frame, true, key, keys, {}, false);
        QTest::simulateEvent(frame, false, key, keys, {}, false);
    }
    void go(const QString &path) const
    {
        m_session->typeAddress(url(path));
        QTRY_VERIFY2(m_session->shows(url(path)), qPrintable(m_session->location()));
    }
    /// The engine drops clicks that come too early, whatever the page knows of its painting. So one
    /// beside everything has to be heard first.
    static void clickOn(const BrowserWindow *window, const QString &id,
                        Qt::MouseButton button = Qt::LeftButton)
    {
        const QString isHeard =
            u"if (!('isHeard' in document)) { document.isHeard = false;"
            "addEventListener('pointerdown', () => { document.isHeard = true; }); }"
            "document.isHeard"_s;
        QWidget *page = QWebEngineView::forPage(PopupScene::control(window)->page())->focusProxy();
        QTRY_VERIFY(PopupScene::script(window, isHeard).toBool()
                    || (QTest::mouseClick(page, Qt::LeftButton, {}, QPoint(2, 2)), false));
        PopupScene::click(window, id, button);
    }
    QWebEngineView *view() const { return m_session->active()->findChild<QWebEngineView *>(); }
    QString title() const { return m_session->active()->windowTitle(); }

    std::unique_ptr<Session> m_session;
};

void tst_DaysWalk::initTestCase()
{
    m_session = std::make_unique<Session>();
    QVERIFY(m_session->folder.isValid() && m_session->server.isListening());
    serveSearch();
    serveSignIns();
    serveMedia();
    m_session->start(url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    QTRY_VERIFY(m_session->frame->windowHandle());
}

void tst_DaysWalk::serveSearch()
{
    m_session->folder.write(u"AppData/SearchEngines.ini"_s,
                            "[Engines]\r\nCount=2\r\nURL1=Elsewhere\r\nURL2=Chosen\r\n"
                            "[Engine URLs]\r\nElsewhere="
                                + url(u"/elsewhere?q=<SearchString>"_s).toUtf8()
                                + "\r\nChosen=" + url(u"/find?q=<SearchString>"_s).toUtf8()
                                + "\r\n[Data]\r\nSearchSelection=0\r\n");
    QByteArray list = "<title>Results</title><style>a{display:block;height:40px}</style>";
    for (const QString &result : results) {
        const QByteArray path = result.toLatin1();
        list += "<a id=" + path.mid(1) + " href=" + path + ">" + path + "</a>";
        m_session->server.page(path, "<title>" + path.mid(1) + "</title><p>What was looked for");
    }
    m_session->server.page("/find", list);
}

void tst_DaysWalk::serveSignIns()
{
    TestServer &server = m_session->server;
    // Its title says which field has the keyboard.
    server.page("/login",
                "<title>Sign in</title><form method=post action=/session><input id=user name=user "
                "onfocus='document.title = name'><br><input name=word type=password "
                "onfocus='document.title = name'><button>Go</button></form>");
    server.handle("/session", [](const TestServer::Request &request) {
        TestServer::Reply reply{303, {}, "text/html", {{"Location", "/account"}}};
        if (request.method == "POST" && request.body == "user=walker&word=open+up")
            reply.headers.emplaceBack("Set-Cookie", "session=walker");
        return reply;
    });
    server.handle("/account", [](const TestServer::Request &request) {
        const bool isIn = request.headers.value("cookie").contains("session=walker");
        return TestServer::Reply{
            200, isIn ? "<title>Hello walker</title>" : "<title>Who?</title>", "text/html", {}};
    });
    const QByteArray known = "Basic " + QByteArray("walker:open up").toBase64();
    server.handle("/inside", [known](const TestServer::Request &request) {
        if (request.headers.value("authorization") == known)
            return TestServer::Reply{200, "<title>Inside</title>", "text/html", {}};
        return TestServer::Reply{401,
                                 "<title>Outside</title>",
                                 "text/html",
                                 {{"WWW-Authenticate", "Basic realm=\"the house\""}}};
    });
}

void tst_DaysWalk::serveMedia()
{
    m_session->server.reply("/report.bin",
                            {200,
                             report(),
                             "application/octet-stream",
                             {{"Content-Disposition", "attachment; filename=report.bin"}}});
    m_session->server.page("/files", "<title>Files</title><a id=file href=/report.bin>report</a>");
    // What the element is matters to nobody but the codecs, which an engine may lack.
    m_session->server.page(
        "/film",
        "<title>Film</title><video id=film style='display:block;width:90px;height:60px'></video>"
        "<button id=fill>fill</button><script>fill.onclick = () => film.requestFullscreen();"
        "document.onfullscreenchange = () => document.title = "
        "document.fullscreenElement === film ? 'full' : 'back'</script>");
}

void tst_DaysWalk::searchesWithTheChosenEngine()
{
    press(Qt::Key_F3);
    QComboBox *engines = nullptr;
    QTRY_VERIFY((engines = m_session->frame->findChild<QComboBox *>(u"cboSearchEngine"_s))
                && engines->isVisible());
    engines->setFocus();
    QTest::keyClick(engines, Qt::Key_Down);
    QCOMPARE(engines->currentText(), u"Chosen"_s);
    auto *query = m_session->frame->findChild<AddressBox *>(u"brwSearch"_s);
    QTest::keyClicks(query->findChild<QLineEdit *>(), u"long walks"_s);
    QTest::mouseClick(m_session->frame->findChild<QPushButton *>(u"cmdSearch"_s), Qt::LeftButton);
    QTRY_COMPARE(m_session->server.count("/find"), 1);
    QCOMPARE(m_session->server.requests("/find").first().path, QByteArray("/find?q=long%20walks"));
    QCOMPARE(m_session->server.count("/elsewhere"), 0);
    QTRY_COMPARE(title(), u"Results"_s);
    press(Qt::Key_F3);
    QTRY_VERIFY(!engines->isVisible());
}

void tst_DaysWalk::opensThreeResultsSideBySide()
{
    BrowserWindow *list = m_session->active();
    const int before = m_session->windows();
    for (int i = 0; i < results.size(); ++i) {
        clickOn(list, results.at(i).mid(1), Qt::MiddleButton);
        QTRY_COMPARE(m_session->windows(), before + i + 1);
        QCOMPARE(m_session->active(), list);
    }
    m_session->choose("mnuWindowTileVertical");
    const QList<BrowserWindow *> opened = browserForms().mid(before);
    for (int i = 0; i < opened.size(); ++i) {
        QTRY_COMPARE(opened.at(i)->windowTitle(), results.at(i).mid(1));
        QVERIFY(opened.at(i)->isVisible() && !opened.at(i)->isMaximized());
        for (int j = 0; j < i; ++j)
            QVERIFY(!opened.at(i)->geometry().intersects(opened.at(j)->geometry()));
    }
}

void tst_DaysWalk::signsInByAForm()
{
    go(u"/login"_s);
    clickOn(m_session->active(), u"user"_s);
    QTRY_COMPARE(title(), u"user"_s);
    QTest::keyClicks(view()->focusProxy(), u"walker"_s);
    QTest::keyClick(view()->focusProxy(), Qt::Key_Tab);
    QTRY_COMPARE(title(), u"word"_s);
    QTest::keyClicks(view()->focusProxy(), u"open up"_s);
    QTest::keyClick(view()->focusProxy(), Qt::Key_Return);
    QTRY_COMPARE(title(), u"Hello walker"_s);
    QTRY_VERIFY(m_session->shows(url(u"/account"_s)));
    QCOMPARE(m_session->server.count("/session"), 1);
}

void tst_DaysWalk::signsInAsTheServerAsks()
{
    m_session->typeAddress(url(u"/inside"_s));
    QTRY_VERIFY(PageAsks::shownIn(m_session->active()));
    const PageQuestionBox *box = PageAsks::shownIn(m_session->active());
    QTest::keyClicks(box->findChild<QLineEdit *>(u"txtUser"_s), u"walker"_s);
    QTest::keyClicks(box->findChild<QLineEdit *>(u"txtPassword"_s), u"open up"_s);
    PageAsks::press(PageAsks::yes(box));
    QTRY_COMPARE(title(), u"Inside"_s);
    QTRY_VERIFY(!PageAsks::shownIn(m_session->active()));
}

void tst_DaysWalk::downloadsAFile()
{
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    go(u"/files"_s);
    clickOn(m_session->active(), u"file"_s);
    QTRY_VERIFY(folder.exists(u"report.bin"_s));
    QTRY_COMPARE(PageDialogs::read(folder.filePath(u"report.bin"_s)), report());
    QVERIFY(m_session->shows(url(u"/files"_s)));
}

void tst_DaysWalk::printsAPage()
{
    const QString file = m_session->folder.file(u"page.pdf"_s);
    go(u"/result1"_s);
    press(Qt::Key_P, Qt::ControlModifier);
    auto *dialog = PageDialogs::waitFor<QPrintDialog>();
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(u"filename"_s)->setText(file);
    dialog->accept();
    QTRY_VERIFY(PageDialogs::read(file).trimmed().endsWith("%%EOF"));
    QVERIFY(PageDialogs::read(file).startsWith("%PDF"));
}

void tst_DaysWalk::watchesFullScreen()
{
    go(u"/film"_s);
    const BrowserWindow *window = m_session->active();
    const auto *browser = PopupScene::control(window);
    clickOn(window, u"fill"_s);
    QTRY_COMPARE(title(), u"full"_s);
    QWebEngineView *filling = QWebEngineView::forPage(browser->page());
    QTRY_VERIFY(filling->isWindow() && filling->isFullScreen());
    QTest::keyClick(filling, Qt::Key_Escape);
    QTRY_COMPARE(window->windowTitle(), u"back"_s);
    QTRY_VERIFY(window->isAncestorOf(QWebEngineView::forPage(browser->page())));
}

void tst_DaysWalk::reloadsAPageThatCrashed()
{
    go(u"/result2"_s);
    const int before = m_session->server.count("/result2");
    QCOMPARE(::kill(pid_t(view()->page()->renderProcessPid()), SIGKILL), 0);
    QPushButton *reload = nullptr;
    QTRY_VERIFY((reload = m_session->active()->findChild<QPushButton *>(u"cmdReload"_s))
                && reload->isVisible());
    QTest::mouseClick(reload, Qt::LeftButton);
    QTRY_VERIFY(m_session->server.count("/result2") > before);
    QTRY_VERIFY(m_session->shows(url(u"/result2"_s)));
    QTRY_VERIFY(!m_session->active()->findChild<CrashNotice *>());
}

void tst_DaysWalk::reopensAClosedWindow()
{
    go(u"/result3"_s);
    const int before = m_session->windows();
    press(Qt::Key_W, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), before - 1);
    press(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_COMPARE(m_session->windows(), before);
    QTRY_VERIFY(m_session->shows(url(u"/result3"_s)));
}

/// The program that ends is a process of its own; the one that finds the desk is this.
void tst_DaysWalk::findsTheDeskAgainAfterAnUncleanEnd()
{
    const QString deskFile = u"Profiles/Last desk.orp"_s;
    QVERIFY(m_session->frame->close());
    m_session->end();
    QByteArray list = "[Profile_URLS]\r\n";
    for (int i = 0; i < results.size(); ++i)
        list += "URL" + QByteArray::number(i + 1) + '=' + url(results.at(i)).toUtf8() + "\r\n";
    m_session->folder.write(u"Profiles/day.orp"_s, list + "[URL_Count]\r\nCount=3\r\n");
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(folderVariable), m_session->folder.path());
    for (const char *name : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"})
        environment.insert(QLatin1String(name), m_session->folder.file(QLatin1String(name)));
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(QCoreApplication::applicationFilePath(),
                  {m_session->folder.file(u"Profiles/day.orp"_s)});
    QVERIFY(program.waitForStarted());
    const auto kept = [&] {
        return DeskFile::read(m_session->folder.read(deskFile)).windows.size();
    };
    QTRY_COMPARE_WITH_TIMEOUT(kept(), results.size(), 60'000);
    program.kill();
    QVERIFY(program.waitForFinished());

    m_session->frame = std::make_unique<MainWindow>();
    registerAllCommands(*m_session->frame);
    auto desk = std::make_unique<LastDesk>(*m_session->frame);
    startUp(*m_session->frame);
    desk->offer();
    QPushButton *open = nullptr;
    QTRY_VERIFY((open = m_session->frame->findChild<QPushButton *>(u"cmdOpen"_s))
                && open->isVisible());
    QTest::mouseClick(open, Qt::LeftButton);
    QTRY_COMPARE(m_session->windows(), 1 + results.size());
    for (const QString &result : results) {
        const QList<BrowserWindow *> windows = browserForms();
        QVERIFY(std::any_of(windows.cbegin(), windows.cend(), [&](const BrowserWindow *window) {
            return window->browser()->locationUrl() == url(result);
        }));
    }
    desk.reset();
    m_session->end();
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet(folderVariable))
        return runProgram(argc, argv);
    return runEngineTest<tst_DaysWalk>(argc, argv);
}

#include "tst_dayswalk.moc"
