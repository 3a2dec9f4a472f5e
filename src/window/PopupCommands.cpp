#include "PopupCommands.h"

#include "BlockedListDialog.h"
#include "EngineProfile.h"
#include "Frame.h"
#include "Settings.h"

#include <QAction>

using namespace Qt::StringLiterals;

namespace {
/// The engine refuses by itself what the user did not ask for; whoever sets the mark, it follows.
void followKillPopups(const QAction *item)
{
    setScriptsMayOpenWindows(!item->isChecked());
    QObject::connect(item, &QAction::toggled, item, [](bool on) { setScriptsMayOpenWindows(!on); });
}
}

void registerPopupCommands(Frame &frame)
{
    followKillPopups(frame.menuItem(u"mnuToolsKillPopUps"_s));
    frame.handle(u"mnuToolsKillPopUps"_s, [&frame] {
        QAction *item = frame.menuItem(u"mnuToolsKillPopUps"_s);
        item->setChecked(!item->isChecked());
        frame.setButtonPressed(u"PopupKiller"_s, item->isChecked());
    });
    frame.handle(u"mnuToolsSmartPopupKiller"_s, [&frame] {
        QAction *item = frame.menuItem(u"mnuToolsSmartPopupKiller"_s);
        item->setChecked(!item->isChecked());
        Settings::smartPopupKiller.write(item->isChecked()).leaveToLog();
    });
    frame.handle(u"mnuToolsSmartPopupBlockerList"_s,
                 [&frame] { (new BlockedListDialog(frame))->open(); });
    frame.handle(u"mnuToolsMaximizeCatcher"_s, [&frame] {
        QAction *item = frame.menuItem(u"mnuToolsMaximizeCatcher"_s);
        item->setChecked(!item->isChecked());
    });
}
