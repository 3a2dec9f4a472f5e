#include <QApplication>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "AllCommands.h"
#include "AppFolder.h"
#include "CommandLine.h"
#include "DefaultBrowserChoice.h"
#include "DownloadFile.h"
#include "DownloadList.h"
#include "DownloadStore.h"
#include "EndRequests.h"
#include "EngineProfile.h"
#include "EngineStart.h"
#include "HandOver.h"
#include "LastDesk.h"
#include "LaterStarts.h"
#include "MainWindow.h"
#include "ProgramColours.h"
#include "ProgramInfo.h"
#include "StartCleaning.h"
#include "StartListener.h"
#include "StartRequest.h"
#include "StartUp.h"
#include "VisitFile.h"
#include "VisitHistory.h"

namespace {

/// What the toolkit and the engine are told by "-" they are told at a start of their own.
bool isForTheToolkit(const QString &argument)
{
    return argument.startsWith(u'-');
}

HandOver handOver(int argc, char **argv)
{
    // No display is needed for this.
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const StartRequest request = StartRequest::ofThisStart(arguments);
    const auto own = arguments.cbegin() + (request.isPrivate ? 1 : 0);
    if (std::any_of(own, arguments.cend(), isForTheToolkit))
        return {false, StartPlace::take()};
    return HandOver::attempt(request);
}

int runFrame(StartListener &laterStarts)
{
    const bool isFirstStart = !QFileInfo::exists(AppFolder::settingsPath());
    MainWindow frame;
    followEndRequests(frame);
    // Reads beside the start.
    const DownloadStore downloads(downloadList(), DownloadFile::path());
    registerAllCommands(frame);
    // Who stores nothing has no desk to come back to, and has been nowhere.
    const bool isStored = engineProfileIsStored();
    const auto desk = isStored ? std::make_unique<LastDesk>(frame) : nullptr;
    const auto visits = isStored ? std::make_unique<VisitHistory>(VisitFile::path()) : nullptr;
    const auto start = StartRequest::ofThisStart(QCoreApplication::arguments().mid(1));
    frame.setCommandLine(start.text, start.isPrivate ? Privacy::Private : Privacy::Ordinary);
    startUp(frame);
    // Left while it was starting: there is no window whose closing would end the loop.
    if (frame.isClosed())
        return 0;
    const bool isOffered = desk && desk->offer();
    if (isStored && !isFirstStart && !isOffered)
        DefaultBrowserChoice::askOnce(frame);
    startCleaning();
    followLaterStarts(frame, laterStarts);
    const int status = QCoreApplication::exec();
    laterStarts.end();
    return status;
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
        AppFolder::look();
        print(argc, argv);
        return 0;
    }
    AppFolder::begin();
    HandOver start = handOver(argc, argv);
    if (start.isDone)
        return 0;
    chooseRenderingBackend();
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(ProgramInfo::title());
    QCoreApplication::setApplicationVersion(ProgramInfo::version());
    QString why;
    if (!sandboxUsable(&why)) {
        std::fprintf(stderr, "%s\n", qPrintable(why));
        return 1;
    }
    StartListener laterStarts(std::move(start.place));
    // The engine takes the colours, and what the user wants of them, as they are when it starts.
    const ProgramColours colours;
    AppFolder::setSettingsPath(AppFolder::appData(QStringLiteral("Settings.ini")));
    startEngine();
    warmUpEngine();
    const int status = runFrame(laterStarts);
    stopEngine();
    return status;
}
