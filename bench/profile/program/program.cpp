// The program on a profile: tells how long its interface was held while the profile was opened
// and loaded, and how long saving takes.
//
// program FOLDER PROFILE: FOLDER is the application folder.
#include <QApplication>
#include <QElapsedTimer>
#include <QStatusBar>
#include <QTimer>
#include <cstdio>

#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "EngineStart.h"
#include "FileDialogRequest.h"
#include "MainWindow.h"
#include "Pulse.h"
#include "StartUp.h"
#include "Taken.h"

using namespace Qt::StringLiterals;

namespace {

/// Median of some saves, milliseconds.
double saveMs(MainWindow &frame, const QString &folder)
{
    const QString file = folder + "/Profiles/saved.orp"_L1;
    setFileDialogAnswerer([file](const FileDialogRequest &) -> std::optional<FileDialogAnswer> {
        return FileDialogAnswer{file, 1};
    });
    QList<double> taken;
    for (int i = 0; i < 9; ++i) {
        QElapsedTimer clock;
        clock.start();
        frame.run(u"mnuFileProfilesSave"_s);
        taken.append(double(clock.nsecsElapsed()) / 1e6);
    }
    return median(taken);
}

int run(const QString &folder, const QString &profile)
{
    MainWindow frame;
    registerAllCommands(frame);
    frame.setCommandLine(u"about:blank"_s);
    startUp(frame);
    constexpr int settleMs = 1000;
    QTimer::singleShot(settleMs, &frame, [&] {
        Pulse pulse(nullptr);
        QElapsedTimer clock;
        clock.start();
        frame.openProfile(profile, true);
        const qint64 opened = clock.elapsed();
        const double openHeld = pulse.longestMs();
        const auto *strip = frame.findChild<QStatusBar *>();
        while (strip->isVisible())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const qint64 loaded = clock.elapsed();
        const double held = pulse.longestMs();
        std::printf("%d %lld %lld %.1f %.1f %.2f\n", int(browserForms().size()) - 1, opened, loaded,
                    openHeld, held, saveMs(frame, folder));
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}

}

int main(int argc, char **argv)
{
    chooseRenderingBackend();
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    AppFolder::setPath(arguments.value(1));
    startEngine();
    warmUpEngine();
    const int status = run(arguments.value(1), arguments.value(2));
    stopEngine();
    return status;
}
