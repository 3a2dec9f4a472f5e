// Opening a profile against a bare program with as many views: time, memory, and how long the
// interface is held; saving many windows.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>

#include "PageServer.h"
#include "Places.h"
#include "ProcessMemory.h"
#include "Report.h"
#include "Taken.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray page = R"(<!DOCTYPE html><title>A page of many</title><h1>A page of many</h1>
<p>One paragraph of text, as small as a page can be.</p>
<script>addEventListener('load', () => navigator.sendBeacon('/loaded' + location.pathname));</script>
)";

constexpr int rounds = 3;
constexpr int pages = 100;
constexpr int manyPages = 1000;
constexpr double timeLimit = 1.20;
constexpr double memoryLimit = 1.05;
constexpr double heldLimitMs = 100;
constexpr double saveLimitMs = 50;
constexpr int longestRunMs = 300'000;
constexpr int sampleMs = 250;
/// Both programs wait that long before they open anything.
constexpr double settleMs = 1000;

/// An application folder with a profile of `count` of the server's pages.
void makeFolder(const QTemporaryDir &folder, const PageServer &server, int count)
{
    makeQuietFolder(folder.path());
    QFile profile(folder.filePath(u"Profiles/x.orp"_s));
    if (!profile.open(QIODevice::WriteOnly))
        qFatal("no profile");
    profile.write("[Profile_URLS]\r\n");
    for (int i = 1; i <= count; ++i) {
        profile.write("URL" + QByteArray::number(i) + '=' + server.base().toUtf8()
                      + QByteArray::number(i) + "\r\n");
    }
    profile.write("[URL_Count]\r\nCount=" + QByteArray::number(count) + "\r\n");
}

struct Run {
    double milliseconds = 0;
    double megabytes = 0;
    /// What the program printed.
    QList<QByteArray> figures;
};

enum class Sampling { Off, On };

/// Runs a program until `count` pages have loaded and, when it `prints`, it has printed a line.
/// Sampling the memory costs time: such a run's time is worth nothing.
Run measure(PageServer &server, const QString &program, const QStringList &arguments, int count,
            bool prints, Sampling sampling)
{
    const FreshHome home;
    QProcess process;
    process.setProcessEnvironment(home.environment());
    process.setStandardErrorFile(QProcess::nullDevice());
    Run result;
    QSet<int> loaded;
    QEventLoop loop;
    QElapsedTimer clock;
    const auto endWhenDone = [&] {
        if (loaded.size() >= count && result.milliseconds == 0)
            result.milliseconds = double(clock.nsecsElapsed()) / 1e6 - settleMs;
        if (loaded.size() >= count && (!prints || process.canReadLine()))
            loop.quit();
    };
    QObject::connect(&server, &PageServer::told, &loop, [&](const QByteArray &, int number) {
        loaded.insert(number);
        endWhenDone();
    });
    QObject::connect(&process, &QProcess::readyRead, &loop, endWhenDone);
    QTimer sample;
    QObject::connect(&sample, &QTimer::timeout, &loop, [&] {
        result.megabytes =
            std::max(result.megabytes, double(treeMemory(process.processId())) / 1024);
    });
    QTimer::singleShot(longestRunMs, &loop, [&] { qFatal("%s hangs", qPrintable(program)); });
    clock.start();
    process.start(program, arguments);
    if (sampling == Sampling::On)
        sample.start(sampleMs);
    loop.exec();
    result.megabytes = std::max(result.megabytes, double(treeMemory(process.processId())) / 1024);
    result.figures = process.readAll().simplified().split(' ');
    process.kill();
    process.waitForFinished();
    return result;
}

struct Series {
    QList<double> times;
    QList<double> memories;
};

void measureMany(PageServer &server, const QString &program, Report &report)
{
    const QTemporaryDir folder;
    makeFolder(folder, server, manyPages);
    const QStringList arguments{folder.path(), folder.filePath(u"Profiles/x.orp"_s)};
    const Run run = measure(server, program, arguments, manyPages, true, Sampling::On);
    report.note(
        u"%1 pages: windows up in %2 ms, all loaded in %3 ms, peak %4 MB, interface held %5 "
        "ms at most"_s.arg(manyPages)
            .arg(QString::fromLatin1(run.figures.value(1)),
                 QString::fromLatin1(run.figures.value(2)))
            .arg(run.megabytes, 0, 'f', 0)
            .arg(QString::fromLatin1(run.figures.value(4))));
    report.atMost(u"saving 1000 windows"_s, run.figures.value(5).toDouble(), saveLimitMs, u"ms"_s);
}

}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QString program = QString::fromLocal8Bit(PROGRAM);
    const QString bare = QString::fromLocal8Bit(BARE);
    // The backend the program picks by itself where there is no graphics device.
    if (drawsInSoftware())
        qputenv("QT_QUICK_BACKEND", "software");
    PageServer server(page);
    const QTemporaryDir folder;
    makeFolder(folder, server, pages);
    const QStringList ourArguments{folder.path(), folder.filePath(u"Profiles/x.orp"_s)};
    const QStringList bareArguments{u"views"_s, server.base(), QString::number(pages)};
    Series ours;
    Series others;
    QList<double> held;
    for (int round = 0; round < rounds; ++round) {
        others.times.append(
            measure(server, bare, bareArguments, pages, false, Sampling::Off).milliseconds);
        const Run timed = measure(server, program, ourArguments, pages, true, Sampling::Off);
        ours.times.append(timed.milliseconds);
        held.append(timed.figures.value(4).toDouble());
        others.memories.append(
            measure(server, bare, bareArguments, pages, false, Sampling::On).megabytes);
        ours.memories.append(
            measure(server, program, ourArguments, pages, true, Sampling::On).megabytes);
    }
    Report report;
    report.note(
        u"medians of %1 rounds, %2 pages: bare views %3 ms %4 MB, Orvane %5 ms %6 MB"_s.arg(rounds)
            .arg(pages)
            .arg(median(others.times), 0, 'f', 0)
            .arg(median(others.memories), 0, 'f', 0)
            .arg(median(ours.times), 0, 'f', 0)
            .arg(median(ours.memories), 0, 'f', 0));
    report.atMost(u"time"_s, median(ours.times) / median(others.times), timeLimit, u"times"_s);
    report.atMost(u"memory"_s, median(ours.memories) / median(others.memories), memoryLimit,
                  u"times"_s);
    report.atMost(u"interface held"_s, median(held), heldLimitMs, u"ms"_s);
    measureMany(server, program, report);
    return report.failed() ? 1 : 0;
}
