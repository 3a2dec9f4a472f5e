#include "HelpCommands.h"

#include "AppFolder.h"
#include "Frame.h"
#include "MsgBox.h"
#include "ProgramInfo.h"
#include "StartProgram.h"
#include "frmAbout.h"
#include "frmSource.h"

using namespace Qt::StringLiterals;

namespace {

void startUpdater(Frame &frame)
{
    const auto failure = startProgram(AppFolder::path() + "/OrvaneUpdater.exe"_L1);
    if (failure)
        MsgBox::tell(frame.window(),
                     "Error %1: %2"_L1.arg(QString::number(failure->number), failure->text));
}

}

void registerHelpCommands(Frame &frame)
{
    frame.handle(u"mnuHelpAbout"_s, [&frame] { frmAbout::showOver(frame.window()); });
    frmSource::setAboutHandler([](QWidget *owner) { frmAbout::showOver(owner); });
    frame.handle(u"mnuHelpDonate"_s, [&frame] {
        frame.OpenBrowserWindow(AppFolder::appData(u"Donate.html"_s), frame.NewWindowState());
    });
    frame.handle(u"mnuHelpCheckForUpdate"_s, [&frame] { startUpdater(frame); });
    frame.handle(u"mnuHelpKelmarsh"_s, [&frame] {
        frame.OpenBrowserWindow(ProgramInfo::homeUrl(), frame.NewWindowState());
    });
}
