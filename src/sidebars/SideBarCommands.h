#pragma once

class FavoritesBar;
class Frame;
class SearchBar;

/// The menu commands of the two side bars, and what the bars themselves ask for. Only one bar is
/// shown at a time; that the search bar is shown is kept in the settings, of the favorites bar it
/// is not.
void registerSideBarCommands(Frame &frame, FavoritesBar &favorites, SearchBar &search);
