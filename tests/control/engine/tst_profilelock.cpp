// Two programs on one application folder: only the first stores anything.
#include "EngineProfile.h"
#include "EngineTest.h"

#include <QProcess>
#include <QTextStream>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";

/// The second program: 1 when it owns the stored data, 2 when it is off the record. With "--stay"
/// it prints that number and does not end.
int runSecond(int argc, char **argv)
{
    chooseRenderingBackend();
    const QApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"OrvaneTest"_s);
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    startEngine();
    const bool offTheRecord = engineProfile()->isOffTheRecord();
    const int result = !offTheRecord && engineProfileIsStored() ? 1 : 2;
    if (argc > 2) {
        QTextStream(stdout) << result << Qt::endl;
        return QApplication::exec();
    }
    stopEngine();
    return result;
}
}

class tst_profilelock : public QObject {
    Q_OBJECT

private slots:
    void firstProgramStores();
    void secondProgramIsOffTheRecord();
    void anotherFolderIsAnotherBrowser();
    void killedProgramLeavesTheDataToTheNext();

private:
    static void start(QProcess &process, const QString &folder, const QStringList &arguments = {});
    static int second(const QString &folder);
};

void tst_profilelock::start(QProcess &process, const QString &folder, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(folderVariable), folder);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), QStringList{u"--second"_s} + arguments);
}

int tst_profilelock::second(const QString &folder)
{
    QProcess process;
    start(process, folder);
    constexpr int limit = 60000;
    return process.waitForFinished(limit) ? process.exitCode() : -1;
}

void tst_profilelock::firstProgramStores()
{
    QVERIFY(!engineProfile()->isOffTheRecord());
    QVERIFY(engineProfileIsStored());
}

void tst_profilelock::secondProgramIsOffTheRecord()
{
    QCOMPARE(second(AppFolder::path()), 2);
}

void tst_profilelock::anotherFolderIsAnotherBrowser()
{
    const QTemporaryDir other;
    QCOMPARE(second(other.path()), 1);
}

void tst_profilelock::killedProgramLeavesTheDataToTheNext()
{
    const QTemporaryDir folder;
    QProcess killed;
    start(killed, folder.path(), {u"--stay"_s});
    QTRY_VERIFY_WITH_TIMEOUT(killed.canReadLine(), 60000);
    QCOMPARE(killed.readLine().trimmed(), QByteArray("1"));
    QCOMPARE(second(folder.path()), 2);
    killed.kill();
    QVERIFY(killed.waitForFinished());
    QCOMPARE(killed.exitStatus(), QProcess::CrashExit);
    QCOMPARE(second(folder.path()), 1);
}

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--second") == 0)
        return runSecond(argc, argv);
    return runEngineTest<tst_profilelock>(argc, argv);
}

#include "tst_profilelock.moc"
