#include "ToolBarCommands.h"

#include <QAction>

#include "CoolBand.h"
#include "Frame.h"
#include "FrameBody.h"
#include "LinksBar.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

namespace {

/// Whoever sets the mark, the band is shown while it is set.
void showWhileMarked(const QAction *item, CoolBar &bar, const QString &band)
{
    QObject::connect(item, &QAction::toggled, &bar,
                     [&bar, band](bool on) { bar.band(band)->setVisible(on); });
}

}

QString dockItem(CoolBar::Dock side)
{
    return side == CoolBar::Dock::Top ? u"mnuViewToolBarTop"_s : u"mnuViewToolBarBottom"_s;
}

void registerToolBarCommands(Frame &frame, CoolBar &bar, FrameBody &body, LinksBar &links)
{
    QObject::connect(frame.itemOf(Settings::toolBar), &QAction::toggled, &bar,
                     &QWidget::setVisible);
    showWhileMarked(frame.itemOf(Settings::addressBar), bar, u"Address"_s);
    showWhileMarked(frame.itemOf(Settings::favoriteLinks), bar, u"Links"_s);
    showWhileMarked(frame.itemOf(Settings::tabStrip), bar, u"Tabs"_s);
    frame.handleToggle(frame.itemOf(Settings::favoriteLinks), [&links](bool shown) {
        if (shown)
            links.fillIfEmpty();
    });
    for (const CoolBar::Dock side : dockSides) {
        frame.handle(dockItem(side), [&frame, &body, side] {
            body.dockCoolBar(side);
            for (const CoolBar::Dock each : dockSides)
                frame.menuItem(dockItem(each))->setChecked(each == side);
            Settings::align.write(static_cast<int>(side)).leaveToLog();
        });
    }
}
