#include "SideBarCommands.h"
#include "BrowserWindow.h"
#include "FavoritesBar.h"
#include "FavoritesTransfer.h"
#include "Frame.h"
#include "SearchBar.h"
#include "Settings.h"

#include <QAction>

using namespace Qt::StringLiterals;

namespace {
/// A side bar with the menu item and the tool bar button that show whether it is shown.
struct SideBar {
    QWidget &bar;
    QString item;
    QString button;
};

SideBar searchBar(SearchBar &bar)
{
    return {bar, u"mnuViewSearchBar"_s, u"Search"_s};
}

SideBar favoritesBar(FavoritesBar &bar)
{
    return {bar, u"mnuFavoritesShow"_s, u"Favorites"_s};
}

void hide(Frame &frame, const SideBar &side)
{
    side.bar.setVisible(false);
    frame.menuItem(side.item)->setChecked(false);
    frame.setButtonPressed(side.button, false);
}

bool invertMark(Frame &frame, const SideBar &side)
{
    QAction *item = frame.menuItem(side.item);
    item->setChecked(!item->isChecked());
    return item->isChecked();
}

void toggleSearchBar(Frame &frame, FavoritesBar &favorites, SearchBar &search)
{
    const SideBar side = searchBar(search);
    const bool shown = invertMark(frame, side);
    if (shown)
        hide(frame, favoritesBar(favorites));
    search.setVisible(shown);
    Settings::searchBar.write(shown).leaveToLog();
    if (shown)
        search.setFocus();
    frame.setButtonPressed(side.button, shown);
}

void toggleFavoritesBar(Frame &frame, FavoritesBar &favorites, SearchBar &search)
{
    const SideBar side = favoritesBar(favorites);
    const bool shown = invertMark(frame, side);
    if (shown) {
        hide(frame, searchBar(search));
        Settings::searchBar.write(false).leaveToLog();
    }
    favorites.setVisible(shown);
    frame.setButtonPressed(side.button, shown);
}

void open(Frame &frame, int newWindow, const QString &url)
{
    if (newWindow == 1)
        frame.openBrowserWindow(url, frame.newWindowState());
    else
        frame.navigateActive(url);
}
}

void registerSideBarCommands(Frame &frame, FavoritesBar &favorites, SearchBar &search)
{
    frame.handle(u"mnuViewSearchBar"_s, [&] { toggleSearchBar(frame, favorites, search); });
    frame.handle(u"mnuNavigationSearchTheWeb"_s, [&] { frame.run(u"mnuViewSearchBar"_s); });
    frame.handle(u"mnuFavoritesShow"_s, [&] { toggleFavoritesBar(frame, favorites, search); });
    frame.handle(u"mnuFavoritesAdd"_s, [&] { favorites.addCurrentPage(); });
    frame.handle(u"mnuFavoritesOrganize"_s, [&] { favorites.organize(); });
    auto *transfer = new FavoritesTransfer(frame);
    frame.handle(u"mnuFavoritesExport"_s, [transfer] { transfer->exportFile(); });
    frame.handle(u"mnuFavoritesImport"_s, [transfer] { transfer->importFile(); });
    frame.beforeOpening(u"mnuFavorites"_s, [&] {
        frame.menuItem(u"mnuFavoritesAdd"_s)->setEnabled(activeBrowser(frame) != nullptr);
    });
    QObject::connect(&favorites, &FavoritesBar::exitRequested, &favorites,
                     [&] { hide(frame, favoritesBar(favorites)); });
    QObject::connect(&search, &SearchBar::exitRequested, &search,
                     [&] { hide(frame, searchBar(search)); });
    QObject::connect(&search, &SearchBar::searchRequested, &search,
                     [&](int newWindow, const QString &url) { open(frame, newWindow, url); });
}
