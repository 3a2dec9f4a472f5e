#include "ApplySettings.h"

#include <QAction>

#include "CoolBand.h"
#include "Frame.h"
#include "LinksBar.h"
#include "NavigationFlags.h"
#include "Settings.h"
#include "ToolBarCommands.h"

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
    const std::optional<double> stored = Settings::align.read();
    for (const CoolBar::Dock side : dockSides) {
        if (stored == static_cast<int>(side))
            frame.run(dockItem(side));
    }
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
