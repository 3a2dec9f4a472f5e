// A day in private windows of the whole program, and what is left of it on the disk.
#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QWebEngineView>
#include <QtTest>

#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "DownloadFile.h"
#include "DownloadList.h"
#include "DownloadStore.h"
#include "EngineStart.h"
#include "LastDesk.h"
#include "MainWindow.h"
#include "StartUp.h"
#include "TestServer.h"
#include "VisitFile.h"
#include "VisitHistory.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";
constexpr char siteVariable[] = "ORVANE_TEST_SITE";
/// Names that nothing but the private pages has.
constexpr char privateName[] = "hidden-walnut";
constexpr char ordinaryName[] = "open-meadow";

class Day {
public:
    explicit Day(MainWindow &frame)
        : m_frame(frame)
        , m_site(qEnvironmentVariable(siteVariable))
    {
    }

    /// What did not come about; empty: all did.
    QByteArray run()
    {
        m_frame.openBrowserWindow(at(ordinaryName), WindowState::AsOthers);
        if (!isThere(at(ordinaryName)) || !keeps())
            return "the ordinary page";
        m_frame.run(u"mnuFileNewPrivate"_s);
        m_frame.navigateActive(at(privateName));
        if (!isThere(at(privateName)) || !keeps())
            return "the private page";
        script(u"history.pushState({}, '', '/walnut-pushed'); window.open('/walnut-window'); 1"_s);
        const int windows = int(browserForms().size());
        if (!waitFor([windows] { return browserForms().size() > windows; }))
            return "the window of the private page";
        script(u"document.cookie = 'walnut=1; max-age=99999'; null.walnutError"_s);
        if (!downloads())
            return "the download";
        for (BrowserWindow *window : browserForms())
            window->fallAsleep();
        m_frame.run(u"mnuFileProfileSave"_s);
        return {};
    }

private:
    static constexpr auto keeping =
        "(async () => {"
        "localStorage.setItem('kept', location.host);"
        "document.cookie = 'kept=' + location.host + '; max-age=99999';"
        "await caches.open('kept').then(c => c.put('/in-cache', new Response(location.href)));"
        "await new Promise(r => { const o = indexedDB.open(location.host);"
        " o.onsuccess = r; o.onerror = r; });"
        "await fetch('/cached?' + location.host);"
        "document.title = 'done'; })(); 1";

    template <typename Condition> static bool waitFor(Condition condition)
    {
        return QTest::qWaitFor(condition, 30'000);
    }
    QString at(const char *name) const
    {
        return QString(m_site).replace(u"//"_s, u"//"_s + QLatin1StringView(name) + u'.');
    }
    BrowserWindow *active() const { return activeBrowser(m_frame); }
    bool isThere(const QString &url) const
    {
        return waitFor([&] {
            const BrowserWindow *window = active();
            return window && window->browser()->locationUrl() == url
                && window->browser()->hasDocument() && !window->browser()->isBusy();
        });
    }
    bool script(const QString &text) const
    {
        auto *view = active()->findChild<QWebEngineView *>();
        if (view)
            view->page()->runJavaScript(text);
        return view;
    }
    bool keeps() const
    {
        return script(QString::fromLatin1(keeping))
            && waitFor([this] { return active()->windowTitle() == "done"_L1; });
    }
    bool downloads() const
    {
        active()->browser()->navigate(at(privateName) + u"file.bin"_s);
        return waitFor([] {
            const QList<Download> &all = downloadList().all();
            return !all.isEmpty() && all.first().state == Download::State::Done;
        });
    }

    MainWindow &m_frame;
    QString m_site;
};

/// As the main routine does it.
int runProgram(int argc, char **argv)
{
    chooseRenderingBackend();
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"Orvane"_s);
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    startEngine();
    warmUpEngine();
    int status = 0;
    {
        MainWindow frame;
        const DownloadStore downloads(downloadList(), DownloadFile::path());
        registerAllCommands(frame);
        const LastDesk desk(frame);
        const VisitHistory visits(VisitFile::path());
        frame.setCommandLine(QCoreApplication::arguments().value(1));
        startUp(frame);
        Day day(frame);
        const QByteArray failed = day.run();
        std::fputs(failed.isEmpty() ? "done\n" : failed.constData(), stdout);
        std::fflush(stdout);
        // Until the test has seen that.
        std::getchar();
        if (!qEnvironmentVariableIsSet("ORVANE_TEST_STAYS"))
            QTimer::singleShot(0, &frame, [&frame] { frame.close(); });
        status = QCoreApplication::exec();
    }
    stopEngine();
    return status;
}
}

class tst_PrivateDay : public QObject {
    Q_OBJECT

private slots:
    void leavesNothing_data();
    void leavesNothing();

private:
    static QStringList filesWith(const QString &folder, const QString &text);
};

/// Their names as well.
QStringList tst_PrivateDay::filesWith(const QString &folder, const QString &text)
{
    const QByteArray plain = text.toUtf8();
    const QByteArray wide(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    QStringList found;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        if (!walk.fileInfo().isFile())
            continue;
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.readAll();
        if (file.fileName().contains(text) || bytes.contains(plain) || bytes.contains(wide))
            found.append(file.fileName());
    }
    return found;
}

void tst_PrivateDay::leavesNothing_data()
{
    QTest::addColumn<bool>("isKilled");
    QTest::newRow("ended") << false;
    QTest::newRow("killed") << true;
}

void tst_PrivateDay::leavesNothing()
{
    QFETCH(const bool, isKilled);
    TestServer server;
    server.page("/", "<title>Page</title><body>Text</body>");
    server.page("/home", "<title>home</title>");
    server.page("/walnut-window", "<title>Opened</title>");
    server.handle("/cached", [](const TestServer::Request &request) {
        TestServer::Reply reply;
        reply.body = QByteArray(5000, 'x') + request.path;
        reply.headers = {{"Cache-Control", "max-age=99999"}};
        return reply;
    });
    server.file("/file.bin", "bytes", "application/octet-stream");
    const QTemporaryDir folder;
    for (const char *name : {"AppData", "Profiles", "home", "tmp"})
        QDir(folder.path()).mkpath(QLatin1String(name));
    QFile settings(folder.filePath(u"AppData/Settings.ini"_s));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\nHome-URL="
                   + server.url(u"/home"_s).toUtf8() + "\r\n");
    settings.close();
    QFile profile(folder.filePath(u"Profiles/Day.orp"_s));
    QVERIFY(profile.open(QIODevice::WriteOnly));
    profile.write("[Profile_URLS]\r\nURL1=" + server.url(u"/home"_s).toUtf8()
                  + "\r\n[URL_Count]\r\nCount=1\r\n");
    profile.close();
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.remove(QLatin1String(name));
    environment.insert(u"HOME"_s, folder.filePath(u"home"_s));
    environment.insert(u"TMPDIR"_s, folder.filePath(u"tmp"_s));
    environment.insert(QLatin1String(folderVariable), folder.path());
    environment.insert(QLatin1String(siteVariable), server.url(u"/"_s, u"localhost"_s));
    if (isKilled)
        environment.insert(u"ORVANE_TEST_STAYS"_s, u"1"_s);
    program.setProcessEnvironment(environment);
    QByteArray log;
    QByteArray said;
    connect(&program, &QProcess::readyReadStandardError, this,
            [&] { log += program.readAllStandardError(); });
    connect(&program, &QProcess::readyReadStandardOutput, this,
            [&] { said += program.readAllStandardOutput(); });
    program.start(QCoreApplication::applicationFilePath(), {profile.fileName()});
    QTRY_VERIFY_WITH_TIMEOUT(!said.isEmpty(), 120'000);
    QCOMPARE(said, QByteArray("done\n"));
    if (isKilled) {
        program.write("\n");
        QTRY_VERIFY_WITH_TIMEOUT(filesWith(folder.path(), u"open-meadow"_s).size() > 2, 30'000);
        program.kill();
        QVERIFY(program.waitForFinished());
    } else {
        program.write("\n");
        QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 60'000);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    }
    const QStringList ordinary = filesWith(folder.path(), QLatin1String(ordinaryName));
    QVERIFY2(ordinary.size() > 2, qPrintable(ordinary.join(u'\n')));
    QCOMPARE(filesWith(folder.path(), u"walnut"_s), QStringList());
    QVERIFY2(!log.contains("walnut"), log.constData());
    QVERIFY2(!log.contains("Release of profile"), log.constData());
    // What the user wanted stays.
    QCOMPARE(QDir(folder.filePath(u"home/Downloads"_s)).entryList(QDir::Files),
             QStringList{u"file.bin"_s});
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet(folderVariable))
        return runProgram(argc, argv);
    QCoreApplication app(argc, argv);
    tst_PrivateDay test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_privateday.moc"
