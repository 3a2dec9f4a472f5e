#pragma once

#include <QString>

/// The number of the user's Favorites folder, the only special folder the program asks for.
inline constexpr int favoritesFolderNumber = 6;

/// The path of a special folder of the user, without a trailing slash. Empty for every number but
/// that of the Favorites folder, and when the user has no home folder. The folder itself may be
/// missing.
QString specialFolder(int number);
