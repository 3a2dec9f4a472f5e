#include "PopupCommands.h"

#include <QAction>

#include "Frame.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

void registerPopupCommands(Frame &frame)
{
    frame.handle(u"mnuToolsKillPopUps"_s, [&frame] {
        QAction *item = frame.menuItem(u"mnuToolsKillPopUps"_s);
        item->setChecked(!item->isChecked());
        frame.setButtonPressed(u"PopupKiller"_s, item->isChecked());
    });
    frame.handle(u"mnuToolsSmartPopupKiller"_s, [&frame] {
        QAction *item = frame.menuItem(u"mnuToolsSmartPopupKiller"_s);
        item->setChecked(!item->isChecked());
        Settings::writeBoolean(Settings::SmartPopupKiller, item->isChecked());
    });
}
