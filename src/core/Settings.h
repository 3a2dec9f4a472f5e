#pragma once

#include "WriteResult.h"

#include <QString>
#include <optional>

/// The settings file: every key once, with the text that stands for it while it is missing.
/// Nothing is kept in memory; each call goes to the file.
namespace Settings {

struct Key {
    const char *section;
    const char *name;
    /// The value of a missing key, as text.
    const char *missing;
};

inline constexpr Key Language{"Options", "Language", "English"};
inline constexpr Key ShowSplash{"Options", "Show-Splash", "1"};
inline constexpr Key AskOnExit{"Settings", "AskOnExit", "1"};
inline constexpr Key KillPopups{"Settings", "Kill-Popups", "False"};
inline constexpr Key SmartPopupKiller{"Settings", "SmartPopupKiller", "True"};
inline constexpr Key SuppressScriptErrors{"Settings", "Suppress-Script-Errors", "0"};
inline constexpr Key MaximizeCatcher{"Settings", "Maximize-Catcher", "0"};
inline constexpr Key AddToHistory{"Settings", "AddToHistory", "True"};
inline constexpr Key AddToCache{"Settings", "AddToCache", "True"};
inline constexpr Key ToolBar{"View", "Toolbar", "True"};
inline constexpr Key FavoriteLinks{"View", "FavoriteLinks", "True"};
inline constexpr Key TabStrip{"View", "TabStrip", "True"};
inline constexpr Key AddressBar{"View", "AddressBar", "True"};
inline constexpr Key SearchBar{"View", "SearchBar", "False"};
inline constexpr Key Align{"ToolBar", "Align", "1"};

QString read(const Key &key);
/// Nothing when the stored text is no boolean.
std::optional<bool> readBoolean(const Key &key);
/// Nothing when the stored text is no number.
std::optional<double> readNumber(const Key &key);
/// True only for a number equal to 1: the way the splash and the exit question are switched.
bool isOne(const Key &key);
WriteResult write(const Key &key, const QString &value);
/// As menu toggles write: "True" or "False".
WriteResult writeBoolean(const Key &key, bool value);

/// The home page: what the user chose, else the maker's page.
QString homeUrl();
}
