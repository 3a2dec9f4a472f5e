#include "ApplySettings.h"

#include <QAction>

#include "CoolBand.h"
#include "CoolBar.h"
#include "Frame.h"
#include "LinksBar.h"
#include "NavigationFlags.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

namespace {

void applyMarks(const Frame &frame)
{
    for (const Settings::Switch *setting : Settings::switches) {
        const std::optional<bool> on = setting->menuItem ? setting->read() : std::nullopt;
        if (on)
            frame.itemOf(*setting)->setChecked(*on);
    }
}

void applyDocking(Frame &frame)
{
    const auto side = Settings::align.read();
    if (side == 2.0)
        frame.run(u"mnuViewToolBarBottom"_s);
    else if (side == 1.0)
        frame.run(u"mnuViewToolBarTop"_s);
}

}

void applySettings(Frame &frame, CoolBar &bar, LinksBar &links)
{
    applyMarks(frame);
    applyDocking(frame);
    applyNavigationFlags(frame);
    const CoolBand *band = bar.band(u"Links"_s);
    links.rebuildSoon([band] { return band->isVisible(); });
}
