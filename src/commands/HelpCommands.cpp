#include "HelpCommands.h"

#include "AboutDialog.h"
#include "AppFolder.h"
#include "Frame.h"
#include "MsgBox.h"
#include "OwnPages.h"
#include "ProgramInfo.h"
#include "SourceWindow.h"
#include "StartProgram.h"
#include "Texts.h"

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"Help"> texts;

void startUpdater(Frame &frame)
{
    const auto failure = startProgram(AppFolder::program() + "/OrvaneUpdater.exe"_L1);
    if (!failure)
        return;
    const QString more = failure->number == ENOENT
        ? texts.at<"strNoUpdater",
                   "No updater came with this Orvane. Where it was installed as a package, the "
                   "system's updates bring new versions.">()
        : QString();
    MsgBox::tell(frame.window(),
                 "Error %1: %2"_L1.arg(QString::number(failure->number), failure->text), more);
}

}

void registerHelpCommands(Frame &frame)
{
    frame.handle(u"mnuHelpAbout"_s, [&frame] { AboutDialog::showOver(frame.window()); });
    SourceWindow::setAboutHandler([](QWidget *owner) { AboutDialog::showOver(owner); });
    frame.handle(u"mnuHelpDonate"_s, [&frame] {
        frame.openBrowserWindow(AppFolder::appData(u"Donate.html"_s), frame.newWindowState());
    });
    frame.handle(u"mnuHelpCheckForUpdate"_s, [&frame] { startUpdater(frame); });
    frame.handle(u"mnuHelpContents"_s, [&frame] {
        frame.openBrowserWindow(ownScheme + ":guide"_L1, frame.newWindowState());
    });
    frame.handle(u"mnuHelpKelmarsh"_s, [&frame] {
        frame.openBrowserWindow(ProgramInfo::homeUrl(), frame.newWindowState());
    });
}
