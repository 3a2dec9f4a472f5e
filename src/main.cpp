#include <QApplication>
#include <cstdio>

#include "AllCommands.h"
#include "EngineStart.h"
#include "ProgramInfo.h"
#include "frmMain.h"
#include "modMain.h"

namespace {

int runFrame()
{
    frmMain frame;
    registerAllCommands(frame);
    frame.setCommandLine(QCoreApplication::arguments().mid(1).join(u' '));
    startUp(frame);
    // Left while it was starting: there is no window whose closing would end the loop.
    return frame.isClosed() ? 0 : QCoreApplication::exec();
}

}

int main(int argc, char **argv)
{
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
