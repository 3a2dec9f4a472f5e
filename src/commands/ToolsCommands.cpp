#include "ToolsCommands.h"

#include <QAction>

#include "BrowserWindow.h"
#include "ControlPanel.h"
#include "Frame.h"
#include "InternetOptionsDialog.h"
#include "OptionsDialog.h"
#include "Settings.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int neither = NavFlags::NoHistory + NavFlags::NoWriteToCache;
/// Pages of the platform's internet options.
constexpr int generalPage = 0;
constexpr int advancedPage = 6;

bool invert(Frame &frame, const QString &name)
{
    QAction *item = frame.menuItem(name);
    item->setChecked(!item->isChecked());
    return item->isChecked();
}

bool isChecked(const Frame &frame, const QString &name)
{
    return frame.menuItem(name)->isChecked();
}

void togglePagesToHistory(Frame &frame)
{
    const bool history = invert(frame, u"mnuToolsAddPagesToHistory"_s);
    Settings::addToHistory.write(history).leaveToLog();
    const bool cache = isChecked(frame, u"mnuToolsAddFilesToCache"_s);
    if (history)
        frame.setNavigationFlags(cache ? 0 : NavFlags::NoWriteToCache);
    else
        frame.setNavigationFlags(cache ? NavFlags::NoHistory : neither);
}

/// Unlike the other toggle: without the cache alone, pages stay out of the history instead, until
/// the history is toggled. On purpose, and the same as at the start.
void toggleFilesToCache(Frame &frame)
{
    const bool cache = invert(frame, u"mnuToolsAddFilesToCache"_s);
    Settings::addToCache.write(cache).leaveToLog();
    const bool history = isChecked(frame, u"mnuToolsAddPagesToHistory"_s);
    if (history == cache)
        frame.setNavigationFlags(history ? 0 : neither);
    else
        frame.setNavigationFlags(NavFlags::NoHistory);
}

/// For this session only: the stored setting is the options dialog's.
void toggleScriptErrors(Frame &frame)
{
    const bool silent = invert(frame, u"mnuToolsScriptErrorSuppress"_s);
    for (BrowserWindow *form : browserForms())
        form->browser()->setSilent(silent);
}

}

void registerToolsCommands(Frame &frame, StartUpFrame &program)
{
    frame.handle(u"mnuToolsAddPagesToHistory"_s, [&frame] { togglePagesToHistory(frame); });
    frame.handle(u"mnuToolsAddFilesToCache"_s, [&frame] { toggleFilesToCache(frame); });
    frame.handle(u"mnuToolsScriptErrorSuppress"_s, [&frame] { toggleScriptErrors(frame); });
    using enum InternetOptionsDialog::Page;
    frame.handle(u"mnuToolsInternetOptions"_s, [&frame] {
        if (!ControlPanel::open(generalPage))
            InternetOptionsDialog::showOver(frame, General);
    });
    frame.handle(u"mnuToolsAdvancedInternetOptions"_s, [&frame] {
        if (!ControlPanel::open(advancedPage))
            InternetOptionsDialog::showOver(frame, Advanced);
    });
    frame.handle(u"mnuToolsOptions"_s,
                 [&frame, &program] { OptionsDialog::showOver(frame, program); });
}
