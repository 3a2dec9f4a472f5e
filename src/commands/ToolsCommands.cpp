#include "ToolsCommands.h"

#include "BrowserWindow.h"
#include "ControlPanel.h"
#include "DevToolsWindow.h"
#include "Frame.h"
#include "InternetOptionsDialog.h"
#include "OptionsDialog.h"
#include "Settings.h"
#include "WebBrowser.h"
#include "WindowMenu.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace {

/// Pages of the platform's internet options.
constexpr int generalPage = 0;
constexpr int advancedPage = 6;

void showDeveloperTools(Frame &frame)
{
    BrowserWindow *active = activeBrowser(frame);
    DevToolsWindow *tools = active ? DevToolsWindow::openFor(frame, *active) : nullptr;
    if (!tools) {
        QApplication::beep();
        return;
    }
    activateTab(frame, tools->tabKey());
    tools->focusContents();
}
}

void registerToolsCommands(Frame &frame, StartUpFrame &program)
{
    frame.handleToggle(frame.itemOf(Settings::suppressScriptErrors), [](bool silent) {
        for (const BrowserWindow *form : browserForms())
            form->browser()->setSilent(silent);
    });
    using enum InternetOptionsDialog::Page;
    frame.handle(u"mnuToolsInternetOptions"_s, [&frame] {
        if (!ControlPanel::open(generalPage))
            InternetOptionsDialog::showOver(frame, General);
    });
    frame.handle(u"mnuToolsAdvancedInternetOptions"_s, [&frame] {
        if (!ControlPanel::open(advancedPage))
            InternetOptionsDialog::showOver(frame, Advanced);
    });
    frame.handle(u"mnuToolsDeveloper"_s, [&frame] { showDeveloperTools(frame); });
    frame.handle(u"mnuToolsOptions"_s,
                 [&frame, &program] { OptionsDialog::showOver(frame, program); });
}
