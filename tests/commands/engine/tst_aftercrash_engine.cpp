// The program with its engine: renderers and pages that end, and what comes back.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>

#include <csignal>
#include <cstdio>

#include "AllCommands.h"
#include "AppFolder.h"
#include "DeskFile.h"
#include "EndRequests.h"
#include "EngineStart.h"
#include "LastDesk.h"
#include "MainWindow.h"
#include "StartUp.h"
#include "TempAppFolder.h"
#include "TestServer.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";
/// "open": what is offered is opened; "tell": its ticks are printed.
constexpr char answerVariable[] = "ORVANE_TEST_ANSWER";

void answerOffer(const MainWindow &frame)
{
    const auto *list = frame.findChild<QTreeWidget *>(u"lstDesk"_s);
    if (!list)
        return;
    if (qgetenv(answerVariable) == "open") {
        frame.findChild<QPushButton *>(u"cmdOpen"_s)->click();
        return;
    }
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        std::putchar(list->topLevelItem(i)->checkState(0) == Qt::Checked ? '+' : '-');
    std::putchar('\n');
    std::fflush(stdout);
}

int runProgram(int argc, char **argv)
{
    chooseRenderingBackend();
    QApplication app(argc, argv);
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    startEngine();
    warmUpEngine();
    int status = 0;
    {
        MainWindow frame;
        followEndRequests(frame);
        registerAllCommands(frame);
        LastDesk desk(frame);
        frame.setCommandLine(QCoreApplication::arguments().value(1));
        startUp(frame);
        desk.offer();
        answerOffer(frame);
        status = QCoreApplication::exec();
    }
    stopEngine();
    return status;
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int parentOf(int process)
{
    const QByteArray state = contentsOf(u"/proc/%1/stat"_s.arg(process));
    return state.mid(state.lastIndexOf(')') + 4).split(' ').value(0).toInt();
}

bool isBelow(int process, qint64 ancestor)
{
    while (process > 1 && process != ancestor)
        process = parentOf(process);
    return process == ancestor;
}

/// The processes that show pages for a program: those made from one that stands ready for it keep
/// its name.
QList<int> renderersOf(qint64 program)
{
    QList<int> found;
    const QStringList numbers = QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
    for (const QString &number : numbers) {
        const QByteArray line = contentsOf("/proc/"_L1 + number + "/cmdline"_L1);
        const bool isForPages = line.contains("--type=renderer") || line.contains("--type=zygote");
        if (isForPages && isBelow(number.toInt(), program))
            found.append(number.toInt());
    }
    const QList<int> all = found;
    for (const int process : all)
        found.removeAll(parentOf(process));
    return found;
}
}

class tst_AfterCrashEngine : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowsOfEndedRenderersComeBack();
    void pageThatEndsTheProgramHasNoTickTheSecondTime();
    void scrollingIsWritten();
    void twentyEndsLoseNoWindow();

private:
    void start(const char *answer = "", const QString &address = {}, const QString &display = {});
    void killRenderers() const;
    Desk stored() const { return DeskFile::read(m_folder->read(u"Profiles/Last desk.orp"_s)); }
    QStringList addresses() const
    {
        QStringList all;
        const Desk desk = stored();
        for (const DeskWindow &window : desk.windows)
            all.append(window.address);
        return all;
    }
    QString url(const QString &path) const { return m_server->url(path); }
    QString profileOf(const QStringList &paths) const;
    void kill() const
    {
        m_program->kill();
        QVERIFY(m_program->waitForFinished());
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<QProcess> m_program;
};

void tst_AfterCrashEngine::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_server = std::make_unique<TestServer>();
    m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\nHome-URL="
                            + url(u"/home"_s).toUtf8() + "\r\n");
    m_server->page("/home", "<title>home page</title>");
    for (const char *path : {"/one", "/two", "/three"})
        m_server->page(path, "<title>page</title><p>Text");
}

void tst_AfterCrashEngine::cleanup()
{
    m_program.reset();
    m_server.reset();
    m_folder.reset();
}

void tst_AfterCrashEngine::start(const char *answer, const QString &address, const QString &display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(folderVariable), m_folder->path());
    environment.insert(QLatin1String(answerVariable), QLatin1String(answer));
    if (!display.isEmpty())
        environment.insert(u"DISPLAY"_s, display);
    m_program = std::make_unique<QProcess>();
    m_program->setProcessEnvironment(environment);
    m_program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_program->start(QCoreApplication::applicationFilePath(), {address});
    QVERIFY(m_program->waitForStarted());
}

QString tst_AfterCrashEngine::profileOf(const QStringList &paths) const
{
    QByteArray text = "[Profile_URLS]\r\n";
    int number = 0;
    for (const QString &path : paths)
        text += "URL" + QByteArray::number(++number) + '=' + url(path).toUtf8() + "\r\n";
    text += "[URL_Count]\r\nCount=" + QByteArray::number(number) + "\r\n";
    [&] { QVERIFY(m_folder->write(u"Profiles/day.orp"_s, text)); }();
    return m_folder->file(u"Profiles/day.orp"_s);
}

void tst_AfterCrashEngine::killRenderers() const
{
    const QList<int> renderers = renderersOf(m_program->processId());
    QVERIFY(!renderers.isEmpty());
    for (const int renderer : renderers)
        ::kill(renderer, SIGKILL);
    const auto isAnyLeft = [&renderers] {
        return std::any_of(renderers.cbegin(), renderers.cend(), [](int renderer) {
            return QFile::exists(u"/proc/%1/exe"_s.arg(renderer));
        });
    };
    QTRY_VERIFY(!isAnyLeft());
}

void tst_AfterCrashEngine::windowsOfEndedRenderersComeBack()
{
    const QStringList all{url(u"/one"_s), url(u"/two"_s), url(u"/three"_s)};
    start("", profileOf({u"/one"_s, u"/two"_s, u"/three"_s}));
    QTRY_COMPARE_WITH_TIMEOUT(addresses(), all, 60'000);
    QTRY_COMPARE_WITH_TIMEOUT(stored().windows.first().title, u"page"_s, 30'000);
    killRenderers();
    QCOMPARE(addresses(), all);
    kill();
    m_server->forgetRequests();
    start("open");
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/three"), 1, 60'000);
    // With the page that the start opens.
    QTRY_COMPARE(addresses(), QStringList{url(u"/home"_s)} + all);
    QCOMPARE(m_server->count("/one"), 0);
}

void tst_AfterCrashEngine::pageThatEndsTheProgramHasNoTickTheSecondTime()
{
    start("", profileOf({u"/one"_s, u"/two"_s}));
    QTRY_COMPARE_WITH_TIMEOUT(addresses(), QStringList({url(u"/one"_s), url(u"/two"_s)}), 60'000);
    kill();
    m_server->handle("/two", [this](const TestServer::Request &) {
        m_program->kill();
        return TestServer::Reply{};
    });
    start("open");
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, 60'000);
    start("tell");
    QTRY_VERIFY_WITH_TIMEOUT(m_program->canReadLine(), 60'000);
    QCOMPARE(m_program->readLine(), QByteArray("+-\n"));
}

void tst_AfterCrashEngine::scrollingIsWritten()
{
    m_server->page("/long",
                   "<title>long</title><body style='height:5000px'><script>"
                   "onload = () => setTimeout(() => scrollTo(0, 1234), 0)</script>");

    start("", url(u"/long"_s));
    const auto scroll = [this] {
        const Desk desk = stored();
        return desk.windows.isEmpty() ? 0 : desk.windows.last().scroll.y();
    };
    QTRY_COMPARE_WITH_TIMEOUT(scroll(), 1234, 60'000);
}

/// Each start brings back what the one before left, and has one more window.
void tst_AfterCrashEngine::twentyEndsLoseNoWindow()
{
    enum End { Killed, RenderersKilled, Asked, DisplayGone, Kinds };
    constexpr int ends = 20;
    QStringList all;
    for (int i = 0; i < ends; ++i) {
        const int end = i % Kinds;
        QProcess server;
        QString display;
        if (end == DisplayGone) {
            server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s});
            QTRY_VERIFY_WITH_TIMEOUT(server.canReadLine(), 30'000);
            display = u':' + QString::fromLatin1(server.readLine()).trimmed();
        }
        const Desk left = stored();
        m_server->forgetRequests();
        const QString path = u"/w%1"_s.arg(i);
        m_server->page(path.toUtf8(), "<title>page</title>");
        all.append(url(path));
        start("open", all.last(), display);
        const auto inAnyOrder = [](QStringList list) {
            list.sort();
            return list;
        };
        QTRY_COMPARE_WITH_TIMEOUT(inAnyOrder(addresses()), inAnyOrder(all), 60'000);
        // A page that was loading as the program ended would come back without its tick.
        if (left.active >= 0) {
            const QByteArray woken = QUrl(left.windows.at(left.active).address).path().toUtf8();
            QTRY_VERIFY_WITH_TIMEOUT(m_server->count(woken) > 0, 60'000);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(m_folder->file(u"AppData/Waking"_s)), 60'000);
        if (end == RenderersKilled)
            killRenderers();
        if (end == DisplayGone)
            server.kill();
        else
            ::kill(pid_t(m_program->processId()), end == Asked ? SIGTERM : SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, 60'000);
        QCOMPARE(inAnyOrder(addresses()), inAnyOrder(all));
    }
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet(folderVariable))
        return runProgram(argc, argv);
    QApplication app(argc, argv);
    tst_AfterCrashEngine test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_aftercrash_engine.moc"
