// What windows cost that are wholly covered: twenty animated pages behind a maximized one, against
// the one visible page alone in a bare view.
#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <unistd.h>

#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "EngineStart.h"
#include "MainWindow.h"
#include "Places.h"
#include "ProcessMemory.h"
#include "Report.h"
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
    process.start(QString::fromLocal8Bit(BARE),
                  {u"view"_s, u"file://"_s + file, QString::number(size.width()),
                   QString::number(size.height())});
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
    const FreshHome home;
    home.use();
    chooseRenderingBackend();
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    makeQuietFolder(folder.path());
    AppFolder::setPath(folder.path());
    QFile file(folder.filePath(u"page.html"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size())
        qFatal("no page");
    file.close();

    startEngine();
    QSize pageSize;
    const double own = ownTime(file.fileName(), &pageSize);
    stopEngine();
    const double bare = bareTime(file.fileName(), pageSize);
    Report report;
    report.note(u"%1 ms of processor time in %2 s with %3 pages covered, bare view %4 ms"_s
                    .arg(own, 0, 'f', 0)
                    .arg(spanMs / 1000)
                    .arg(covered)
                    .arg(bare, 0, 'f', 0));
    report.atMost(u"processor time"_s, own / bare, limit, u"times"_s);
    return report.failed() ? 1 : 0;
}
