#include "ApplySettings.h"

#include <QAction>

#include "AppFolder.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "Frame.h"
#include "IniStore.h"
#include "LinksBar.h"
#include "Settings.h"
#include "TextRules.h"
#include "ToolBarCommands.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

void applyKillPopups(Frame &frame)
{
    QAction *item = frame.menuItem(u"mnuToolsKillPopUps"_s);
    // Missing, the key leaves the mark as it stands: the frame may be applying settings again.
    const QString stored = readIni(u"Settings"_s, u"Kill-Popups"_s, booleanText(item->isChecked()),
                                   AppFolder::settingsPath());
    if (const auto on = textToBoolean(stored)) {
        item->setChecked(*on);
        frame.setButtonPressed(u"PopupKiller"_s, *on);
    }
}

void applyStrip(Frame &frame, CoolBar &bar)
{
    if (const auto on = Settings::readBoolean(Settings::ToolBar)) {
        bar.setVisible(*on);
        frame.menuItem(u"mnuViewToolBarVisible"_s)->setChecked(*on);
        enableBandItems(frame, *on);
    }
}

void applyBand(Frame &frame, CoolBar &bar, const Settings::Key &key, const QString &band,
               const QString &item)
{
    if (const auto on = Settings::readBoolean(key)) {
        bar.band(band)->setVisible(*on);
        frame.menuItem(item)->setChecked(*on);
    }
}

void applySearchBar(Frame &frame, QWidget &searchBar)
{
    if (const auto on = Settings::readBoolean(Settings::SearchBar)) {
        searchBar.setVisible(*on);
        frame.menuItem(u"mnuViewSearchBar"_s)->setChecked(*on);
        frame.setButtonPressed(u"Search"_s, *on);
    }
}

void applyDocking(Frame &frame)
{
    const auto side = Settings::readNumber(Settings::Align);
    if (side == 2.0)
        frame.run(u"mnuViewToolBarBottom"_s);
    else if (side == 1.0)
        frame.run(u"mnuViewToolBarTop"_s);
}

void applyMark(Frame &frame, const Settings::Key &key, const QString &item)
{
    if (const auto on = Settings::readBoolean(key))
        frame.menuItem(item)->setChecked(*on);
}

void applyNavigationFlags(Frame &frame)
{
    applyMark(frame, Settings::AddToHistory, u"mnuToolsAddPagesToHistory"_s);
    applyMark(frame, Settings::AddToCache, u"mnuToolsAddFilesToCache"_s);
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
    applyBand(frame, bar, Settings::FavoriteLinks, u"Links"_s, u"mnuViewToolBarFavoriteLinks"_s);
    applyBand(frame, bar, Settings::TabStrip, u"Tabs"_s, u"mnuViewToolBarTabStrip"_s);
    applyBand(frame, bar, Settings::AddressBar, u"Address"_s, u"mnuViewToolBarAddressBar"_s);
    applySearchBar(frame, searchBar);
    applyDocking(frame);
    applyNavigationFlags(frame);
    applyMark(frame, Settings::SuppressScriptErrors, u"mnuToolsScriptErrorSuppress"_s);
    applyMark(frame, Settings::MaximizeCatcher, u"mnuToolsMaximizeCatcher"_s);
    applyMark(frame, Settings::SmartPopupKiller, u"mnuToolsSmartPopupKiller"_s);
    const CoolBand *band = bar.band(u"Links"_s);
    links.rebuildSoon([band] { return band->isVisible(); });
}
