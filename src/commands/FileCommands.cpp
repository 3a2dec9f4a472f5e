#include "FileCommands.h"

#include <QApplication>
#include <QMdiSubWindow>

#include "BrowserWindow.h"
#include "Clipboard.h"
#include "ExecForms.h"
#include "Forms.h"
#include "Frame.h"
#include "OpenAddressDialog.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

void newOnCurrentPage(Frame &frame)
{
    if (const BrowserWindow *active = activeBrowser(frame))
        frame.openWindowLike(active->privacy(), active->browser()->locationUrl(),
                             WindowState::AsOthers);
    else
        frame.openBrowserWindow({}, frame.newWindowState());
}

void onActivePage(Frame &frame, const QString &item, OleCmd command,
                  bool (*exec)(WebBrowser &, OleCmd))
{
    frame.handle(item, [&frame, command, exec] {
        const BrowserWindow *active = activeBrowser(frame);
        if (active && !exec(*active->browser(), command))
            QApplication::beep();
    });
}

void closeActive(Frame &frame)
{
    if (QMdiSubWindow *active = frame.activeChild())
        active->close();
}

/// Every loaded form but the frame and an open modal dialog; source windows among them.
void closeAll(Frame &frame)
{
    for (QWidget *form : Forms::all()) {
        if (form == frame.window() || form->isModal())
            continue;
        form->setWindowState(Qt::WindowMinimized);
        form->close();
    }
}

void registerNewCommands(Frame &frame)
{
    frame.handle(u"mnuFileNewCurrent"_s, [&frame] { newOnCurrentPage(frame); });
    frame.handle(u"mnuFileNewBlankPage"_s,
                 [&frame] { frame.openBrowserWindow(u"About:Blank"_s, frame.newWindowState()); });
    frame.handle(u"mnuFileNewHomePage"_s,
                 [&frame] { frame.openBrowserWindow({}, frame.newWindowState()); });
    frame.handle(u"mnuFileNewFromClipboard"_s,
                 [&frame] { frame.openBrowserWindow(clipboardText(), frame.newWindowState()); });
}

void registerPageCommands(Frame &frame)
{
    onActivePage(frame, u"mnuFileSaveAs"_s, OleCmd::SaveAs, ExecForms::four);
    onActivePage(frame, u"mnuFilePrint"_s, OleCmd::Print, ExecForms::two);
    onActivePage(frame, u"mnuFilePrintPreview"_s, OleCmd::PrintPreview, ExecForms::four);
    onActivePage(frame, u"mnuFilePageSetup"_s, OleCmd::PageSetup, ExecForms::four);
    onActivePage(frame, u"mnuFileProperties"_s, OleCmd::Properties, ExecForms::four);
}

}

void registerFileCommands(Frame &frame)
{
    registerNewCommands(frame);
    registerPageCommands(frame);
    frame.handle(u"mnuFileOpen"_s, [&frame] { (new OpenAddressDialog(frame))->open(); });
    frame.handle(u"mnuFileClose"_s, [&frame] { closeActive(frame); });
    frame.handle(u"mnuFileCloseAll"_s, [&frame] { closeAll(frame); });
    frame.handle(u"mnuFileExit"_s, [&frame] { frame.window()->close(); });
}
