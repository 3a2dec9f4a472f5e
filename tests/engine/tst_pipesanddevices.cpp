// What is neither file nor folder, also on disks that do not answer.
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <condition_variable>
#include <cstring>
#include <dlfcn.h>
#include <mutex>
#include <sys/stat.h>

#include "PipesAndDevices.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char silentDisk[] = "/disk-whose-server-has-gone";
constexpr int longestMs = 1000;

std::mutex theMutex;
std::condition_variable theServer;
bool isGone = true;
int waiting = 0;
int done = 0;
}

extern "C" int stat(const char *path, struct stat *found) noexcept
{
    static auto *const real =
        reinterpret_cast<int (*)(const char *, struct stat *)>(dlsym(RTLD_NEXT, "stat"));
    if (std::strncmp(path, silentDisk, sizeof silentDisk - 1) != 0)
        return real(path, found);
    std::unique_lock lock(theMutex);
    ++waiting;
    theServer.wait(lock, [] { return !isGone; });
    --waiting;
    ++done;
    return -1;
}

class tst_PipesAndDevices : public QObject {
    Q_OBJECT

private slots:
    void tellsThemFromFiles();
    void diskThatDoesNotAnswerHoldsNobody();
};

void tst_PipesAndDevices::tellsThemFromFiles()
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(QFile::link(pipe, folder.filePath(u"link"_s)));
    QFile file(folder.filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    // A busy machine may be late with any one answer.
    QTRY_VERIFY(isPipeOrDevice(pipe));
    QTRY_VERIFY(isPipeOrDevice(folder.filePath(u"link"_s)));
    QTRY_VERIFY(isPipeOrDevice(u"/dev/zero"_s));
    QVERIFY(!isPipeOrDevice(file.fileName()));
    QVERIFY(!isPipeOrDevice(folder.path()));
    QVERIFY(!isPipeOrDevice(folder.filePath(u"nothing"_s)));
}

void tst_PipesAndDevices::diskThatDoesNotAnswerHoldsNobody()
{
    const auto onIt = [](int number) { return QLatin1String(silentDisk) + u"/%1"_s.arg(number); };
    constexpr int files = 50;
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < files; ++i)
        QVERIFY(!isPipeOrDevice(onIt(i)));
    QVERIFY2(time.elapsed() < files / 5 * longestMs, qPrintable(QString::number(time.elapsed())));
    int asked = 0;
    {
        const std::lock_guard lock(theMutex);
        asked = waiting;
        isGone = false;
    }
    QVERIFY(asked > 0 && asked < 10);
    theServer.notify_all();
    const auto allHaveAnswered = [asked] {
        const std::lock_guard lock(theMutex);
        return done == asked;
    };
    QTRY_VERIFY(allHaveAnswered());
    QTRY_VERIFY2(isPipeOrDevice(u"/dev/zero"_s), "the questions are over");
}

QTEST_APPLESS_MAIN(tst_PipesAndDevices)
#include "tst_pipesanddevices.moc"
