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
/// Whoever sets the mark, the bar is shown while it is set, and the other one is not.
void showWhileMarked(QAction *item, QWidget &bar, QAction *other)
{
    QObject::connect(item, &QAction::toggled, &bar, [&bar, other](bool on) {
        if (on)
            other->setChecked(false);
        bar.setVisible(on);
    });
}

void registerToggles(Frame &frame, FavoritesBar &favorites, SearchBar &search)
{
    QAction *searchItem = frame.itemOf(Settings::searchBar);
    QAction *favoritesItem = frame.menuItem(u"mnuFavoritesShow"_s);
    showWhileMarked(searchItem, search, favoritesItem);
    showWhileMarked(favoritesItem, favorites, searchItem);
    frame.handleToggle(searchItem, [&search](bool shown) {
        if (shown)
            search.setFocus();
    });
    frame.handleToggle(favoritesItem, [](bool shown) {
        if (shown)
            Settings::searchBar.write(false).leaveToLog();
    });
    QObject::connect(&search, &SearchBar::exitRequested, searchItem,
                     [searchItem] { searchItem->setChecked(false); });
    QObject::connect(&favorites, &FavoritesBar::exitRequested, favoritesItem,
                     [favoritesItem] { favoritesItem->setChecked(false); });
}

void open(Frame &frame, int newWindow, const QString &url)
{
    if (newWindow == 1)
        openBesideActive(frame, url);
    else
        frame.navigateActive(url);
}
}

void registerSideBarCommands(Frame &frame, FavoritesBar &favorites, SearchBar &search)
{
    registerToggles(frame, favorites, search);
    frame.handle(u"mnuFavoritesAdd"_s, [&] { favorites.addCurrentPage(); });
    frame.handle(u"mnuFavoritesOrganize"_s, [&] { favorites.organize(); });
    auto *transfer = new FavoritesTransfer(frame);
    frame.handle(u"mnuFavoritesExport"_s, [transfer] { transfer->exportFile(); });
    frame.handle(u"mnuFavoritesImport"_s, [transfer] { transfer->importFile(); });
    QObject::connect(&search, &SearchBar::searchRequested, &search,
                     [&](int newWindow, const QString &url) { open(frame, newWindow, url); });
}
