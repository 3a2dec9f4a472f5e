#include "PopupCommands.h"

#include "BlockedListDialog.h"
#include "Frame.h"
#include "Profiles.h"
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
    followKillPopups(frame.itemOf(Settings::killPopups));
    frame.handle(u"mnuToolsSmartPopupBlockerList"_s,
                 [&frame] { (new BlockedListDialog(frame))->open(); });
}
