// Two programs on one application folder: only the first stores anything.
#include "EngineProfile.h"
#include "EngineTest.h"

#include <QProcess>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";

/// The second program: 1 when it owns the stored data, 2 when it is off the record.
int runSecond(int argc, char **argv)
{
    chooseRenderingBackend();
    const QApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"OrvaneTest"_s);
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    startEngine();
    const bool offTheRecord = engineProfile()->isOffTheRecord();
    const int result = !offTheRecord && engineProfileIsStored() ? 1 : 2;
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

private:
    static int second(const QString &folder);
};

int tst_profilelock::second(const QString &folder)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(folderVariable), folder);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {u"--second"_s});
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

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--second") == 0)
        return runSecond(argc, argv);
    return runEngineTest<tst_profilelock>(argc, argv);
}

#include "tst_profilelock.moc"
