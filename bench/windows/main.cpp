// Many windows: opening them, switching between them, arranging them, and what they weigh.
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <unistd.h>

#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "EngineStart.h"
#include "MainWindow.h"
#include "PageServer.h"
#include "Places.h"
#include "ProcessMemory.h"
#include "Report.h"
#include "StartUp.h"
#include "Taken.h"
#include "WindowMenu.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray page = R"(<!DOCTYPE html><title>A page of many</title><h1>A page of many</h1>
<p>One paragraph of text, as small as a page can be.</p>
<script>
const tell = what => requestAnimationFrame(() => requestAnimationFrame(
    () => navigator.sendBeacon('/' + what + location.pathname)));
tell('first');
document.addEventListener('visibilitychange', () => document.hidden || tell('again'));
</script>)";

constexpr int many = 100;
constexpr int switches = 20;
constexpr int settleMs = 2000;

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(settleMs, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Windows 1 to `count` by turns, each shown by a click on its tab.
double switchingTime(MainWindow &frame, PageServer &server, int count)
{
    const QList<BrowserWindow *> forms = browserForms();
    QList<double> times;
    int shown = count;
    for (int i = 0; i < switches; ++i) {
        const int next = 1 + (shown * 7 + i) % count;
        if (next == shown)
            continue;
        const QString key = forms.at(next - 1)->tabKey();
        times.append(server.untilTold(next, [&] { activateTab(frame, key); }));
        shown = next;
    }
    return median(times);
}

void arrange(MainWindow &frame, const QString &command, Report &report)
{
    QElapsedTimer clock;
    clock.start();
    frame.run(command);
    report.atMost(command, double(clock.nsecsElapsed()) / 1e6, 300, u"ms"_s);
}

/// Runs the event loop until so many pages have painted for the first time.
void untilPainted(PageServer &server, int count)
{
    constexpr int limitMs = 60'000;
    QEventLoop loop;
    QObject::connect(&server, &PageServer::told, &loop, [&](const QByteArray &word, int) {
        count -= word == "first";
        if (count <= 0)
            loop.quit();
    });
    QTimer::singleShot(limitMs, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Of views as large as the windows here, which are maximized.
double bareMemory(PageServer &server)
{
    const FreshHome home;
    QProcess process;
    process.setProcessEnvironment(home.environment());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QString::fromLocal8Bit(BARE),
                  {u"views"_s, server.base(), QString::number(many), u"maximized"_s});
    untilPainted(server, many);
    settle();
    const double result = double(treeMemory(process.processId())) / 1024;
    process.kill();
    process.waitForFinished();
    return result;
}

void measure(MainWindow &frame, PageServer &server, Report &report)
{
    QList<double> early, late;
    double switchingTwo = 0;
    for (int number = 1; number <= many; ++number) {
        const double time = server.untilTold(
            number, [&] { frame.openBrowserWindow(server.page(number), frame.newWindowState()); });
        if (number == 2)
            switchingTwo = switchingTime(frame, server, 2);
        if (number >= 8 && number <= 12)
            early.append(time);
        if (number > many - 5)
            late.append(time);
    }
    settle();
    const double memory = double(treeMemory(getpid())) / 1024;
    const double switchingMany = switchingTime(frame, server, many);
    report.note(u"switching %1 ms with 2, %2 ms with %3; opening the 10th %4 ms, the 100th %5 ms"_s
                    .arg(switchingTwo, 0, 'f', 1)
                    .arg(switchingMany, 0, 'f', 1)
                    .arg(many)
                    .arg(median(early), 0, 'f', 1)
                    .arg(median(late), 0, 'f', 1));
    report.atMost(u"switching, 100 against 2"_s, switchingMany / switchingTwo, 1.5, u"times"_s);
    report.atMost(u"opening, 100th against 10th"_s, median(late) / median(early), 1.3, u"times"_s);
    for (const char *command :
         {"mnuWindowCascade", "mnuWindowTileHorizontal", "mnuWindowTileVertical",
          "mnuWindowMinimizeAll", "mnuWindowRestoreAll"})
        arrange(frame, QString::fromLatin1(command), report);
    const double bare = bareMemory(server);
    report.note(
        u"%1 MB against %2 MB of a bare program"_s.arg(memory, 0, 'f', 0).arg(bare, 0, 'f', 0));
    report.atMost(u"memory"_s, memory / bare, 1.05, u"times"_s);
}

}

int main(int argc, char **argv)
{
    const FreshHome home;
    home.use();
    chooseRenderingBackend();
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    makeQuietFolder(folder.path());
    AppFolder::setPath(folder.path());
    startEngine();
    Report report;
    {
        PageServer server(page);
        MainWindow frame;
        registerAllCommands(frame);
        frame.setCommandLine(u"about:blank"_s);
        startUp(frame);
        frame.run(u"mnuFileCloseAll"_s);
        settle();
        measure(frame, server, report);
        frame.close();
    }
    stopEngine();
    return report.failed() ? 1 : 0;
}
