// Opening a profile against a bare program with as many views: time, memory, and how long the
// interface is held; saving many windows.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>

#include "PageServer.h"
#include "ProcessMemory.h"

using namespace Qt::StringLiterals;

namespace {

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

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

bool report(const char *what, double value, double limit)
{
    const bool kept = value <= limit;
    std::printf("profile: %s %.3f (limit %.2f)%s\n", what, value, limit, kept ? "" : " OVER");
    std::fflush(stdout);
    return kept;
}

/// An application folder with a profile of `count` of the server's pages.
void makeFolder(const QTemporaryDir &folder, const PageServer &server, int count)
{
    QDir(folder.path()).mkpath(u"AppData"_s);
    QDir(folder.path()).mkpath(u"Profiles"_s);
    QFile settings(folder.filePath(u"AppData/Settings.ini"_s));
    QFile profile(folder.filePath(u"Profiles/x.orp"_s));
    if (!settings.open(QIODevice::WriteOnly) || !profile.open(QIODevice::WriteOnly))
        qFatal("no application folder");
    settings.write("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n");
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
    const QTemporaryDir home;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, home.path());
    for (const char *place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.insert(QLatin1StringView(place), home.filePath(QLatin1StringView(place)));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    server.forget();
    Run result;
    QEventLoop loop;
    QElapsedTimer clock;
    const auto endWhenDone = [&] {
        if (server.loaded() >= count && result.milliseconds == 0)
            result.milliseconds = double(clock.nsecsElapsed()) / 1e6 - settleMs;
        if (server.loaded() >= count && (!prints || process.canReadLine()))
            loop.quit();
    };
    QObject::connect(&server, &PageServer::pageLoaded, &loop, endWhenDone);
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

bool reportMany(PageServer &server, const QString &program)
{
    const QTemporaryDir folder;
    makeFolder(folder, server, manyPages);
    const QStringList arguments{folder.path(), folder.filePath(u"Profiles/x.orp"_s)};
    const Run run = measure(server, program, arguments, manyPages, true, Sampling::On);
    std::printf("profile: %d pages: windows up in %s ms, all loaded in %s ms, peak %.0f MB, "
                "interface held %s ms at most\n",
                manyPages, run.figures.value(1).constData(), run.figures.value(2).constData(),
                run.megabytes, run.figures.value(4).constData());
    return report("saving 1000 windows, ms", run.figures.value(5).toDouble(), saveLimitMs);
}

}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QString program = QString::fromLocal8Bit(PROGRAM);
    const QString bare = QString::fromLocal8Bit(BARE_VIEWS);
    // The backend the program picks by itself where there is no graphics device.
    if (QDir(u"/dev/dri"_s).entryList({u"renderD*"_s}, QDir::System).isEmpty())
        qputenv("QT_QUICK_BACKEND", "software");
    PageServer server;
    const QTemporaryDir folder;
    makeFolder(folder, server, pages);
    const QStringList ourArguments{folder.path(), folder.filePath(u"Profiles/x.orp"_s)};
    const QStringList bareArguments{server.base(), QString::number(pages)};
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
    std::printf("profile: medians of %d rounds, %d pages: bare views %.0f ms %.0f MB, Orvane %.0f "
                "ms %.0f MB\n",
                rounds, pages, median(others.times), median(others.memories), median(ours.times),
                median(ours.memories));
    bool kept = report("time ratio", median(ours.times) / median(others.times), timeLimit);
    kept &= report("memory ratio", median(ours.memories) / median(others.memories), memoryLimit);
    kept &= report("interface held, ms", median(held), heldLimitMs);
    kept &= reportMany(server, program);
    return kept ? 0 : 1;
}
