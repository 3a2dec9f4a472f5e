#include "ApplySettings.h"

#include <QAction>

#include "CoolBand.h"
#include "CoolBar.h"
#include "Frame.h"
#include "LinksBar.h"
#include "Settings.h"
#include "ToolBarCommands.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

/// Nothing when the stored text is no boolean: the mark stays as it is.
std::optional<bool> applyMark(Frame &frame, const Settings::Switch &setting)
{
    const std::optional<bool> on = setting.read();
    if (on)
        frame.menuItem(QString::fromLatin1(setting.menuItem))->setChecked(*on);
    return on;
}

void applyKillPopups(Frame &frame)
{
    if (const auto on = applyMark(frame, Settings::killPopups))
        frame.setButtonPressed(u"PopupKiller"_s, *on);
}

void applyStrip(Frame &frame, CoolBar &bar)
{
    if (const auto on = applyMark(frame, Settings::toolBar)) {
        bar.setVisible(*on);
        enableBandItems(frame, *on);
    }
}

void applyBand(Frame &frame, CoolBar &bar, const Settings::Switch &setting, const QString &band)
{
    if (const auto on = applyMark(frame, setting))
        bar.band(band)->setVisible(*on);
}

void applySearchBar(Frame &frame, QWidget &searchBar)
{
    if (const auto on = applyMark(frame, Settings::searchBar)) {
        searchBar.setVisible(*on);
        frame.setButtonPressed(u"Search"_s, *on);
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

void applyNavigationFlags(Frame &frame)
{
    applyMark(frame, Settings::addToHistory);
    applyMark(frame, Settings::addToCache);
    const bool history = frame.menuItem(u"mnuToolsAddPagesToHistory"_s)->isChecked();
    const bool cache = frame.menuItem(u"mnuToolsAddFilesToCache"_s)->isChecked();
    // With just one of the two, pages stay out of the history whichever one it is: on purpose.
    if (history && cache)
        frame.setNavigationFlags(0);
    else if (!history && !cache)
        frame.setNavigationFlags(NavFlags::NoHistory + NavFlags::NoWriteToCache);
    else
        frame.setNavigationFlags(NavFlags::NoHistory);
}

}

void applySettings(Frame &frame, CoolBar &bar, QWidget &searchBar, LinksBar &links)
{
    applyKillPopups(frame);
    applyStrip(frame, bar);
    applyBand(frame, bar, Settings::favoriteLinks, u"Links"_s);
    applyBand(frame, bar, Settings::tabStrip, u"Tabs"_s);
    applyBand(frame, bar, Settings::addressBar, u"Address"_s);
    applySearchBar(frame, searchBar);
    applyDocking(frame);
    applyNavigationFlags(frame);
    applyMark(frame, Settings::suppressScriptErrors);
    applyMark(frame, Settings::maximizeCatcher);
    applyMark(frame, Settings::smartPopupKiller);
    const CoolBand *band = bar.band(u"Links"_s);
    links.rebuildSoon([band] { return band->isVisible(); });
}
