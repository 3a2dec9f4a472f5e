#include <QApplication>
#include <QFileInfo>
#include <cstdio>

#include "AllCommands.h"
#include "CommandLine.h"
#include "DownloadFile.h"
#include "DownloadList.h"
#include "DownloadStore.h"
#include "EndRequests.h"
#include "EngineStart.h"
#include "MainWindow.h"
#include "ProgramInfo.h"
#include "StartCleaning.h"
#include "StartUp.h"

namespace {

int runFrame()
{
    MainWindow frame;
    followEndRequests(frame);
    // Reads beside the start.
    const DownloadStore downloads(downloadList(), DownloadFile::path());
    registerAllCommands(frame);
    frame.setCommandLine(QCoreApplication::arguments().mid(1).join(u' '));
    startUp(frame);
    // Left while it was starting: there is no window whose closing would end the loop.
    if (frame.isClosed())
        return 0;
    startCleaning();
    return QCoreApplication::exec();
}

void print(int argc, char **argv)
{
    // No display is needed for this.
    const QCoreApplication app(argc, argv);
    useStoredLanguage();
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    std::fputs(qPrintable(commandLineAnswer(argv[1], program)), stdout);
}

}

int main(int argc, char **argv)
{
    if (argc > 1 && asksForWords(argv[1])) {
        print(argc, argv);
        return 0;
    }
    chooseRenderingBackend();
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(ProgramInfo::title());
    QCoreApplication::setApplicationVersion(ProgramInfo::version());
    QString why;
    if (!sandboxUsable(&why)) {
        std::fprintf(stderr, "%s\n", qPrintable(why));
        return 1;
    }
    startEngine();
    warmUpEngine();
    const int status = runFrame();
    stopEngine();
    return status;
}
