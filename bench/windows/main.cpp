// Many windows: opening them, switching between them, arranging them, and what they weigh.
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <unistd.h>

#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "EngineStart.h"
#include "Forms.h"
#include "IniStore.h"
#include "MainWindow.h"
#include "ProcessMemory.h"
#include "StartUp.h"
#include "Watch.h"
#include "WindowMenu.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int many = 100;
constexpr int switches = 20;
constexpr int settleMs = 2000;

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

bool report(const char *what, double value, double limit)
{
    const bool kept = value <= limit;
    std::printf("windows: %s %.3f (limit %.2f)%s\n", what, value, limit, kept ? "" : " OVER");
    std::fflush(stdout);
    return kept;
}

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(settleMs, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Windows 1 to `count` by turns, each shown by a click on its tab.
double switchingTime(MainWindow &frame, Watch &watch, int count)
{
    const QList<BrowserWindow *> forms = browserForms();
    QList<double> times;
    int shown = count;
    for (int i = 0; i < switches; ++i) {
        const int next = 1 + (shown * 7 + i) % count;
        if (next == shown)
            continue;
        const QString key = forms.at(next - 1)->tabKey();
        times.append(watch.untilPainted(next, [&] { activateTab(frame, key); }));
        shown = next;
    }
    return median(times);
}

bool arrange(MainWindow &frame, const char *command)
{
    QElapsedTimer clock;
    clock.start();
    frame.run(QString::fromLatin1(command));
    return report(qPrintable(QString::fromLatin1(command) + u", ms"_s),
                  double(clock.nsecsElapsed()) / 1e6, 300);
}

/// Of views as large as the windows here, which are maximized.
double bareMemory(Watch &watch)
{
    const QTemporaryDir home;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, home.path());
    for (const char *place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.insert(QLatin1StringView(place), home.filePath(QLatin1StringView(place)));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QString::fromLocal8Bit(BARE_VIEWS),
                  {watch.base(), QString::number(many), u"maximized"_s});
    watch.untilFirstPaints(2 * many);
    settle();
    const double result = double(treeMemory(process.processId())) / 1024;
    process.kill();
    process.waitForFinished();
    return result;
}

bool measure(MainWindow &frame, Watch &watch)
{
    QList<double> early, late;
    double switchingTwo = 0;
    for (int number = 1; number <= many; ++number) {
        const double time = watch.untilPainted(
            number, [&] { frame.openBrowserWindow(watch.page(number), frame.newWindowState()); });
        if (number == 2)
            switchingTwo = switchingTime(frame, watch, 2);
        if (number >= 8 && number <= 12)
            early.append(time);
        if (number > many - 5)
            late.append(time);
    }
    settle();
    const double memory = double(treeMemory(getpid())) / 1024;
    const double switchingMany = switchingTime(frame, watch, many);
    std::printf("windows: switching %.1f ms with 2, %.1f ms with %d; opening the 10th %.1f ms, the "
                "100th %.1f ms\n",
                switchingTwo, switchingMany, many, median(early), median(late));
    bool kept = report("switching, 100 against 2", switchingMany / switchingTwo, 1.5);
    kept &= report("opening, 100th against 10th", median(late) / median(early), 1.3);
    for (const char *command :
         {"mnuWindowCascade", "mnuWindowTileHorizontal", "mnuWindowTileVertical",
          "mnuWindowMinimizeAll", "mnuWindowRestoreAll"})
        kept &= arrange(frame, command);
    const double bare = bareMemory(watch);
    std::printf("windows: %.0f MB against %.0f MB of a bare program\n", memory, bare);
    return kept & report("memory", memory / bare, 1.05);
}

}

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    for (const char *place : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(place, home.filePath(QLatin1StringView(place)).toLocal8Bit());
    chooseRenderingBackend();
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    QDir(folder.path()).mkpath(u"AppData"_s);
    AppFolder::setPath(folder.path());
    const QString settings = AppFolder::appData(u"Settings.ini"_s);
    writeIni(u"Options"_s, u"Show-Splash"_s, u"0"_s, settings).leaveToLog();
    writeIni(u"Settings"_s, u"AskOnExit"_s, u"0"_s, settings).leaveToLog();
    startEngine();
    bool kept = false;
    {
        Watch watch;
        MainWindow frame;
        registerAllCommands(frame);
        frame.setCommandLine(u"about:blank"_s);
        startUp(frame);
        frame.run(u"mnuFileCloseAll"_s);
        settle();
        kept = measure(frame, watch);
        frame.close();
    }
    stopEngine();
    return kept ? 0 : 1;
}
