// What downloads cost: the time and the processor time of a large one against a bare view's, how
// long two hundred at once hold the interface, and how long a long list takes to open. Ends with 1
// over a limit.
#include "AllCommands.h"
#include "AppFolder.h"
#include "DownloadList.h"
#include "EngineStart.h"
#include "FileServer.h"
#include "MainWindow.h"
#include "PageQuestionBox.h"
#include "Places.h"
#include "ProcessMemory.h"
#include "Pulse.h"
#include "Report.h"
#include "StartUp.h"
#include "Taken.h"
#include "WaitUntil.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMdiSubWindow>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largeSize = 1024LL * 1024 * 1024;
constexpr int rounds = 5;
constexpr double timeLimit = 1.1;
constexpr double processorLimit = 1.2;
constexpr int manyFiles = 200;
constexpr int listed = 1000;
constexpr double holdLimit = 100;

constexpr auto largePage =
    "<script>fetch('/wait').then(() => location = '/file/large.bin/1073741824')</script>";
/// Of the links that a script clicks on at once the engine follows ten, of frames all.
constexpr auto manyPage =
    "<body><script>fetch('/wait').then(() => { for (let i = 0; i < 200; ++i) {"
    "const frame = document.createElement('iframe'); frame.src = `/file/${i}.bin/1000000`;"
    "document.body.append(frame); } })</script>";

struct Program {
    QString file;
    QStringList arguments;
    QProcessEnvironment environment;
};

/// Nothing is measured of a program that ends by itself.
void awaitEnd(QProcess &process, int limitMs)
{
    if (process.waitForFinished(limitMs))
        qFatal("the program has ended");
}

/// Until the program has hardly any work left.
void awaitRest(QProcess &process)
{
    constexpr int lookMs = 500;
    constexpr qint64 rest = 20;
    qint64 before = -1;
    for (qint64 now = 0; before < 0 || now - before > rest;) {
        before = treeProcessorTime(process.processId());
        awaitEnd(process, lookMs);
        now = treeProcessorTime(process.processId());
    }
}

/// From the moment that the page asks for the file until it is there under its name.
Taken download(const Program &program, const FileServer &server, const QString &file)
{
    constexpr int lookMs = 5;
    QProcess process;
    process.setProcessEnvironment(program.environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program.file, program.arguments);
    if (!process.waitForStarted())
        qFatal("no program");
    server.awaitPage();
    awaitRest(process);
    const qint64 before = treeProcessorTime(process.processId());
    QElapsedTimer clock;
    clock.start();
    server.go();
    while (QFileInfo(file).size() != largeSize) {
        if (clock.elapsed() > 300'000)
            qFatal("the file has not come");
        awaitEnd(process, lookMs);
    }
    const Taken taken{double(clock.elapsed()),
                      double(treeProcessorTime(process.processId()) - before)};
    process.kill();
    process.waitForFinished();
    QFile::remove(file);
    return taken;
}

/// A folder of the program's own; the built one stays as it is.
QString copyOfProgram(const QString &place, const QString &target)
{
    const QString built = QString::fromLocal8Bit(ORVANE_FOLDER);
    makeQuietFolder(place);
    const QString program = place + "/orvane"_L1;
    QFile options(place + "/AppData/Engine.ini"_L1);
    if (!QFile::copy(built + "/orvane"_L1, program) || !options.open(QIODevice::WriteOnly)
        || options.write("[Engine]\r\nDownloadFolder=" + target.toUtf8() + "\r\n") < 0)
        qFatal("no program");
    return program;
}

void compareLarge(Report &report, const FileServer &server)
{
    const FreshHome home;
    const QTemporaryDir place;
    const QTemporaryDir target;
    const QString file = target.filePath(u"large.bin"_s);
    const QString address = server.url(u"/"_s);
    const Program own{copyOfProgram(place.path(), target.path()), {address}, home.environment()};
    Program bare{
        QString::fromLocal8Bit(BARE), {u"download"_s, address, target.path()}, home.environment()};
    if (drawsInSoftware())
        bare.environment.insert(u"QT_QUICK_BACKEND"_s, u"software"_s);
    QList<Taken> ownTaken;
    QList<Taken> bareTaken;
    for (int round = 0; round < rounds; ++round) {
        bareTaken.append(download(bare, server, file));
        ownTaken.append(download(own, server, file));
    }
    const Taken mine = median(ownTaken);
    const Taken theirs = median(bareTaken);
    report.note(
        u"1 GB: %1 ms, %2 ms of processor time; bare view %3 ms, %4 ms"_s.arg(mine.wall, 0, 'f', 0)
            .arg(mine.processor, 0, 'f', 0)
            .arg(theirs.wall, 0, 'f', 0)
            .arg(theirs.processor, 0, 'f', 0));
    report.atMost(u"time of 1 GB"_s, mine.wall / theirs.wall, timeLimit, u"times"_s);
    report.atMost(u"processor time of 1 GB"_s, mine.processor / theirs.processor, processorLimit,
                  u"times"_s);
}

qsizetype countOf(Download::State state)
{
    const QList<Download> &all = downloadList().all();
    return std::count_if(all.cbegin(), all.cend(),
                         [state](const Download &each) { return each.state == state; });
}

void measureMany(Report &report, MainWindow &frame, const FileServer &server)
{
    // Waiting for the page would keep it from coming.
    const std::unique_ptr<QThread> waits(QThread::create([&server] { server.awaitPage(); }));
    waits->start();
    waitUntil("the page", [&waits] { return waits->isFinished(); });
    Pulse pulse(&frame);
    server.go();
    waitUntil("the files", [&frame] {
        for (PageQuestionBox *box : frame.findChildren<PageQuestionBox *>()) {
            if (auto *yes = box->findChild<QPushButton *>(u"cmdYes"_s); yes && box->isVisible())
                yes->click();
        }
        return countOf(Download::State::Done) == manyFiles;
    });
    report.atMost(u"longest hold with %1 downloads at once"_s.arg(manyFiles), pulse.longestMs(),
                  holdLimit, u"ms"_s);
}

void measureList(Report &report, MainWindow &frame)
{
    for (int i = int(downloadList().all().size()); i < listed; ++i) {
        Download download;
        download.id = DownloadList::newId();
        download.name = u"file %1.bin"_s.arg(i);
        download.folder = QDir::tempPath();
        download.address = QUrl(u"https://files.example/%1"_s.arg(i));
        download.size = download.received = 1'000'000 + i;
        download.began = download.ended = QDateTime::currentDateTimeUtc();
        download.state = Download::State::Done;
        downloadList().add(download, nullptr);
    }
    QList<double> times;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer clock;
        clock.start();
        frame.run(u"mnuToolsDownloads"_s);
        frame.activeChild()->repaint();
        QCoreApplication::processEvents();
        times.append(double(clock.nsecsElapsed()) / 1e6);
        frame.activeChild()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    report.atMost(u"opening the list of %1 downloads"_s.arg(listed), median(times), holdLimit,
                  u"ms"_s);
}

}

int main(int argc, char **argv)
{
    // Before there is a thread.
    const FileServer largeServer(largePage);
    const FileServer manyServer(manyPage);
    const FreshHome home;
    home.use();
    chooseRenderingBackend();
    const QApplication app(argc, argv);
    Report report;
    // "quick" leaves out what takes minutes.
    if (!app.arguments().contains(u"quick"_s))
        compareLarge(report, largeServer);

    const QTemporaryDir folder;
    makeQuietFolder(folder.path());
    AppFolder::setPath(folder.path());
    startEngine();
    {
        MainWindow frame;
        registerAllCommands(frame);
        frame.setCommandLine(manyServer.url(u"/"_s));
        startUp(frame);
        measureMany(report, frame, manyServer);
        measureList(report, frame);
        frame.close();
    }
    stopEngine();
    return report.failed() ? 1 : 0;
}
