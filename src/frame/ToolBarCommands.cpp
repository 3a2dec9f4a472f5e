#include "ToolBarCommands.h"

#include <QAction>

#include "CoolBand.h"
#include "CoolBar.h"
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

void registerDocking(Frame &frame, FrameBody &body, const QString &item, CoolBar::Dock side)
{
    frame.handle(item, [&frame, &body, side] {
        body.dockCoolBar(side);
        frame.menuItem(u"mnuViewToolBarTop"_s)->setChecked(side == CoolBar::Dock::Top);
        frame.menuItem(u"mnuViewToolBarBottom"_s)->setChecked(side == CoolBar::Dock::Bottom);
        Settings::align.write(static_cast<int>(side)).leaveToLog();
    });
}

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
    registerDocking(frame, body, u"mnuViewToolBarTop"_s, CoolBar::Dock::Top);
    registerDocking(frame, body, u"mnuViewToolBarBottom"_s, CoolBar::Dock::Bottom);
}
