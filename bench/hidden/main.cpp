// What windows cost that are wholly covered: twenty animated pages behind a maximized one, against
// the one visible page alone in a bare view.
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <unistd.h>

#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "EngineStart.h"
#include "IniStore.h"
#include "MainWindow.h"
#include "ProcessMemory.h"
#include "StartUp.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int covered = 20;
/// A page put out of sight frees its memory once, some ten seconds later; what it costs from then
/// on is measured.
constexpr int settleMs = 20000;
constexpr int spanMs = 5000;
constexpr double limit = 1.10;

const QByteArray page = R"(<!DOCTYPE html><title>Animated</title><style>
@keyframes turn { to { transform: rotate(360deg); } }
div { width: 200px; height: 200px; margin: 80px; background: #48c;
      animation: turn 2s linear infinite; }
</style><div></div><p id="n"></p>
<script>let n = 0;
(function frame() { document.getElementById('n').textContent = ++n; requestAnimationFrame(frame); })();
</script>)";

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Milliseconds of processor time over the span.
double processorTime(qint64 process)
{
    const qint64 before = treeProcessorTime(process);
    wait(spanMs);
    return double(treeProcessorTime(process) - before);
}

/// The bare view shows the page as large as the frame does.
double bareTime(const QString &file, QSize size)
{
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(
        QString::fromLocal8Bit(BARE_VIEW),
        {u"file://"_s + file, QString::number(size.width()), QString::number(size.height())});
    wait(settleMs);
    const double result = processorTime(process.processId());
    process.kill();
    process.waitForFinished();
    return result;
}

double ownTime(const QString &file, QSize *pageSize)
{
    MainWindow frame;
    registerAllCommands(frame);
    frame.setCommandLine(file);
    startUp(frame);
    for (int i = 0; i < covered; ++i)
        frame.openBrowserWindow(file, WindowState::Maximized);
    wait(settleMs);
    *pageSize = activeBrowser(frame)->browser()->widget()->size();
    const double result = processorTime(getpid());
    frame.close();
    return result;
}

}

int main(int argc, char **argv)
{
    const QTemporaryDir folder;
    for (const char *place : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(place, folder.filePath(u"home"_s).toLocal8Bit());
    chooseRenderingBackend();
    QApplication app(argc, argv);
    QDir(folder.path()).mkpath(u"AppData"_s);
    AppFolder::setPath(folder.path());
    const QString settings = AppFolder::appData(u"Settings.ini"_s);
    writeIni(u"Options"_s, u"Show-Splash"_s, u"0"_s, settings).leaveToLog();
    writeIni(u"Settings"_s, u"AskOnExit"_s, u"0"_s, settings).leaveToLog();
    QFile file(folder.filePath(u"page.html"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size())
        qFatal("no page");
    file.close();

    startEngine();
    QSize pageSize;
    const double own = ownTime(file.fileName(), &pageSize);
    stopEngine();
    const double bare = bareTime(file.fileName(), pageSize);
    const double ratio = own / bare;
    std::printf(
        "hidden: %.0f ms of processor time in %d s with %d pages covered, bare view %.0f ms; "
        "ratio %.3f (limit %.2f)%s\n",
        own, spanMs / 1000, covered, bare, ratio, limit, ratio <= limit ? "" : " OVER");
    return ratio <= limit ? 0 : 1;
}
