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

/// Inverts the mark of `item`; returns the new one.
bool invertMark(Frame &frame, const QString &item)
{
    QAction *action = frame.menuItem(item);
    action->setChecked(!action->isChecked());
    return action->isChecked();
}

void registerBand(Frame &frame, CoolBar &bar, const QString &item, const QString &band,
                  const Settings::Switch &setting, const std::function<void(bool)> &then = {})
{
    frame.handle(item, [&frame, &bar, item, band, &setting, then] {
        const bool shown = invertMark(frame, item);
        bar.band(band)->setVisible(shown);
        setting.write(shown).leaveToLog();
        if (then)
            then(shown);
    });
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

void enableBandItems(Frame &frame, bool enabled)
{
    for (const QString &item : {u"mnuViewToolBarFavoriteLinks"_s, u"mnuViewToolBarTabStrip"_s,
                                u"mnuViewToolBarAddressBar"_s})
        frame.menuItem(item)->setEnabled(enabled);
}

void registerToolBarCommands(Frame &frame, CoolBar &bar, FrameBody &body, LinksBar &links)
{
    frame.handle(u"mnuViewToolBarVisible"_s, [&frame, &bar] {
        const bool shown = invertMark(frame, u"mnuViewToolBarVisible"_s);
        bar.setVisible(shown);
        enableBandItems(frame, shown);
        Settings::toolBar.write(shown).leaveToLog();
    });
    registerBand(frame, bar, u"mnuViewToolBarAddressBar"_s, u"Address"_s, Settings::addressBar);
    registerBand(frame, bar, u"mnuViewToolBarFavoriteLinks"_s, u"Links"_s, Settings::favoriteLinks,
                 [&links](bool shown) {
                     if (shown)
                         links.fillIfEmpty();
                 });
    registerBand(frame, bar, u"mnuViewToolBarTabStrip"_s, u"Tabs"_s, Settings::tabStrip);
    registerDocking(frame, body, u"mnuViewToolBarTop"_s, CoolBar::Dock::Top);
    registerDocking(frame, body, u"mnuViewToolBarBottom"_s, CoolBar::Dock::Bottom);
}
