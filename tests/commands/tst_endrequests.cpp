#include <QApplication>
#include <QFileDialog>
#include <QProcess>
#include <QSessionManager>
#include <QtTest>
#include <csignal>
#include <cstdio>
#include <sys/types.h>
#include <unistd.h>

#include "AllCommands.h"
#include "AppFolder.h"
#include "EndRequests.h"
#include "FakeWebBrowser.h"
#include "MainWindow.h"
#include "RichTextBox.h"
#include "SourceEditor.h"
#include "SourceWindow.h"
#include "StartUp.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char sceneVariable[] = "ORVANE_TEST_SCENE";
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";

void sayReady()
{
    std::puts("ready");
    std::fflush(stdout);
}

/// Tells once a modal dialog is up: whoever opens it waits in an event loop of its own.
void sayReadyInDialog(QObject *owner)
{
    auto *look = new QTimer(owner);
    QObject::connect(look, &QTimer::timeout, owner, [look] {
        if (!QApplication::activeModalWidget())
            return;
        look->stop();
        sayReady();
    });
    look->start(10);
}

/// What the program is doing when it is to end.
void play(const QString &scene, MainWindow &frame)
{
    if (scene == "source"_L1) {
        SourceWindow *window = SourceWindow::openOn(u"<p>"_s, u"http://one/"_s);
        QTest::keyClicks(&window->editor().box(), u"typed"_s);
        sayReady();
    } else if (scene == "question"_L1) {
        sayReadyInDialog(&frame);
        frame.close();
    } else if (scene == "dialog"_L1) {
        sayReadyInDialog(&frame);
        frame.run(u"mnuFileProfiles"_s);
    } else if (scene == "stuck"_L1) {
        sayReady();
        for (;;)
            pause();
    } else if (scene == "session"_L1) {
        sayReady();
        // Who listens is handed no more than the name of it.
        alignas(16) static char none[sizeof(QSessionManager)];
        Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(none));
    } else {
        sayReady();
    }
}

int runProgram()
{
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    FakeEngine engine;
    MainWindow frame;
    registerAllCommands(frame);
    followEndRequests(frame);
    startUp(frame);
    QTimer::singleShot(0, &frame, [&frame] { play(qEnvironmentVariable(sceneVariable), frame); });
    return QCoreApplication::exec();
}

}

/// The program as a process of its own, told to end by the system.
class tst_EndRequests : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void signalsEndItAsTheCloseBoxDoes_data();
    void signalsEndItAsTheCloseBoxDoes();
    void editedSourceIsKept_data();
    void editedSourceIsKept();
    void openQuestionHoldsNothingUp();
    void openDialogHoldsNothingUp();
    void twoSignalsAtOnceEndItAsOneDoes();
    void endOfTheSession();
    void laterSignalEndsAProgramThatIsStuck();
    void hangUpIsIgnoredWhereItWasAtStart();

private:
    void start(const char *scene);
    void send(int number) { QCOMPARE(kill(pid_t(m_program->processId()), number), 0); }
    void endsNormally();
    QStringList recovered() const
    {
        return QDir(m_folder->file(u"AppData/Recovered"_s)).entryList(QDir::Files);
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<QProcess> m_program;
};

void tst_EndRequests::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    // The question is asked at the close box.
    m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=1\r\n");
    m_program = std::make_unique<QProcess>();
}

void tst_EndRequests::cleanup()
{
    m_program.reset();
    m_folder.reset();
}

void tst_EndRequests::start(const char *scene)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(sceneVariable), QLatin1String(scene));
    environment.insert(QLatin1String(folderVariable), m_folder->path());
    m_program->setProcessEnvironment(environment);
    m_program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_program->start(QCoreApplication::applicationFilePath(), {});
    QTRY_VERIFY_WITH_TIMEOUT(m_program->canReadLine(), 30'000);
    QCOMPARE(m_program->readLine(), QByteArray("ready\n"));
}

/// With what is written at the end.
void tst_EndRequests::endsNormally()
{
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, 30'000);
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 0);
    QVERIFY(!m_folder->setting(u"ToolBar"_s, u"Width1"_s).isEmpty());
}

void tst_EndRequests::signalsEndItAsTheCloseBoxDoes_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void tst_EndRequests::signalsEndItAsTheCloseBoxDoes()
{
    QFETCH(int, number);
    start("plain");
    send(number);
    endsNormally();
    QVERIFY(recovered().isEmpty());
}

void tst_EndRequests::editedSourceIsKept_data()
{
    signalsEndItAsTheCloseBoxDoes_data();
}

void tst_EndRequests::editedSourceIsKept()
{
    QFETCH(int, number);
    start("source");
    send(number);
    endsNormally();
    QCOMPARE(recovered().size(), 1);
    QCOMPARE(m_folder->read(u"AppData/Recovered/"_s + recovered().first()), QByteArray("typed<p>"));
}

void tst_EndRequests::openQuestionHoldsNothingUp()
{
    start("question");
    send(SIGTERM);
    endsNormally();
}

void tst_EndRequests::openDialogHoldsNothingUp()
{
    start("dialog");
    send(SIGTERM);
    endsNormally();
}

void tst_EndRequests::twoSignalsAtOnceEndItAsOneDoes()
{
    start("source");
    send(SIGHUP);
    send(SIGTERM);
    endsNormally();
    QCOMPARE(recovered().size(), 1);
}

void tst_EndRequests::endOfTheSession()
{
    start("session");
    endsNormally();
}

void tst_EndRequests::laterSignalEndsAProgramThatIsStuck()
{
    start("stuck");
    const auto hasEnded = [this, process = pid_t(m_program->processId())] {
        if (m_program->state() == QProcess::NotRunning)
            return true;
        kill(process, SIGTERM);
        return false;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), 30'000);
    QCOMPARE(m_program->exitStatus(), QProcess::CrashExit);
}

void tst_EndRequests::hangUpIsIgnoredWhereItWasAtStart()
{
    m_program->setChildProcessModifier([] { std::signal(SIGHUP, SIG_IGN); });
    start("plain");
    send(SIGHUP);
    QProcess status;
    status.start(u"grep"_s, {u"SigIgn"_s, u"/proc/%1/status"_s.arg(m_program->processId())});
    QVERIFY(status.waitForFinished());
    const QByteArray mask = status.readAll().trimmed().right(16);
    QVERIFY2(mask.toULongLong(nullptr, 16) & (1ULL << (SIGHUP - 1)), mask.constData());
    send(SIGTERM);
    endsNormally();
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (qEnvironmentVariableIsSet(sceneVariable))
        return runProgram();
    tst_EndRequests test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_endrequests.moc"
