// Start-up time and memory of the program against a bare view, in turn.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

#include "PageServer.h"
#include "Places.h"
#include "ProcessMemory.h"
#include "Report.h"
#include "Taken.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 9;
constexpr int manyLinks = 1000;
constexpr double ratioLimit = 1.10;
constexpr double defaultRatioLimit = 0.65;
/// After the page is painted, so that what a program does next is counted too.
constexpr int settleMs = 1500;

const QByteArray page = R"(<!DOCTYPE html><title>Start</title><h1>Start</h1>
<p>One paragraph of text, as small as a page can be.</p>
<script>requestAnimationFrame(() => requestAnimationFrame(() => fetch('/painted/1')));</script>)";

struct Program {
    QString file;
    QStringList arguments;
    bool inSoftware = false;
};

/// Starts of one program: from the process's start to its page's second animation frame.
struct Series {
    QList<double> milliseconds;
    QList<double> megabytes;

    QString text() const
    {
        return u"%1 ms %2 MB"_s.arg(median(milliseconds), 0, 'f', 0)
            .arg(median(megabytes), 0, 'f', 0);
    }
};

void writeLinks(const QDir &home, int count)
{
    if (count > 0 && !home.mkpath(u"Favorites/Links"_s))
        qFatal("no folder of links");
    for (int i = 0; i < count; ++i) {
        QFile file(home.filePath(u"Favorites/Links/Link %1.url"_s.arg(i, 4, 10, QChar(u'0'))));
        if (!file.open(QIODevice::WriteOnly)
            || file.write("[InternetShortcut]\r\nURL=http://127.0.0.1/" + QByteArray::number(i)
                          + "\r\n")
                < 0)
            qFatal("no links");
    }
}

/// One start, with `links` shortcut files in the home's folder of links.
void start(PageServer &server, const Program &program, Series &series, int links = 0)
{
    const FreshHome home;
    writeLinks(QDir(home.path()), links);
    QProcess process;
    QProcessEnvironment environment = home.environment();
    if (program.inSoftware)
        environment.insert(u"QT_QUICK_BACKEND"_s, u"software"_s);
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    series.milliseconds.append(server.untilTold(
        1, [&] { process.start(program.file, program.arguments + QStringList{server.page(1)}); }));
    process.waitForFinished(settleMs);
    series.megabytes.append(double(treeMemory(process.processId())) / 1024);
    process.kill();
    process.waitForFinished();
}

/// A folder of the program's own with the given settings; the built one stays as it is.
QString copyOfProgram(const QString &place)
{
    const QString built = QString::fromLocal8Bit(ORVANE_FOLDER);
    QDir(place).mkpath(u"AppData"_s);
    const QString program = place + "/orvane"_L1;
    QFile::copy(built + "/orvane"_L1, program);
    const QDir appData(built + "/AppData"_L1);
    for (const QString &name : appData.entryList(QDir::Files))
        QFile::copy(appData.filePath(name), place + "/AppData/"_L1 + name);
    return program;
}

}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QTemporaryDir quietPlace;
    const QTemporaryDir splashPlace;
    const Program orvane{copyOfProgram(quietPlace.path()), {}};
    const Program withSplash{copyOfProgram(splashPlace.path()), {}};
    makeQuietFolder(quietPlace.path());
    makeFolder(splashPlace.path(), "[Settings]\r\nAskOnExit=0\r\n");
    const Program atDefaults{QString::fromLocal8Bit(BARE), {u"view"_s}};
    Program bare = atDefaults;
    bare.inSoftware = drawsInSoftware();

    PageServer server(page);
    Series first, same, ours, linked, splash, byDefault;
    start(server, bare, first);
    start(server, orvane, first);
    for (int round = 0; round < rounds; ++round) {
        start(server, bare, same);
        start(server, orvane, ours);
        start(server, orvane, linked, manyLinks);
        start(server, atDefaults, byDefault);
        start(server, withSplash, splash);
    }

    Report report;
    report.note(u"medians of %1 rounds; bare view %2, Orvane %3, with %4 links %5, with splash %6, "
                "bare view at its defaults %7"_s.arg(rounds)
                    .arg(same.text(), ours.text())
                    .arg(manyLinks)
                    .arg(linked.text(), splash.text(), byDefault.text()));
    const auto ratio = [&report](const QString &what, const QList<double> &values,
                                 const QList<double> &others, double limit) {
        report.atMost(what, median(values) / median(others), limit, u"times"_s);
    };
    ratio(u"time"_s, ours.milliseconds, same.milliseconds, ratioLimit);
    ratio(u"time with links"_s, linked.milliseconds, same.milliseconds, ratioLimit);
    ratio(u"memory"_s, ours.megabytes, same.megabytes, ratioLimit);
    if (bare.inSoftware)
        ratio(u"time against the defaults"_s, ours.milliseconds, byDefault.milliseconds,
              defaultRatioLimit);
    return report.failed() ? 1 : 0;
}
