#pragma once

#include "IniStore.h"
#include "ProgramInfo.h"

#include <array>
#include <optional>

/// The settings file: every setting declared once. Nothing is kept in memory, each call goes to the
/// file.
namespace Settings {

/// How a switch is written. Readers take either for a boolean, and any other number for "on".
enum class Form {
    /// By the menu item, at each toggle.
    TrueFalse,
    /// By a check box of the options dialog.
    OneZero,
};

struct Switch {
    const char *section;
    const char *key;
    Form form;
    /// What a missing one is. Nothing: what it switches stays as it is, a check box shows "off".
    std::optional<bool> missing;
    /// The item whose mark it is at the start, or null.
    const char *menuItem = nullptr;
    /// The check box of the options dialog that edits it, or null.
    const char *checkBox = nullptr;

    /// Nothing when the stored text is no boolean. `position`: of the band it belongs to.
    std::optional<bool> read(int position = 0) const;
    /// As a check box takes it; nothing when the stored text is no number.
    std::optional<double> readNumber() const;
    /// True only for a number equal to 1: the way the splash and the exit question are switched.
    bool isOne() const { return readNumber() == 1.0; }
    IniEntry entry(bool on, int position = 0) const;
    WriteResult write(bool on) const;
};

struct Number {
    const char *section;
    const char *key;
    /// Nothing: what it sets stays as it is.
    std::optional<int> missing;

    /// Nothing when the stored text is no number.
    std::optional<double> read(int position = 0) const;
    IniEntry entry(qint64 value, int position = 0) const;
    WriteResult write(qint64 value) const;
};

struct Text {
    const char *section;
    const char *key;
    QString (*missing)();

    QString read(int position = 0) const;
    IniEntry entry(const QString &text, int position = 0) const;
};

using enum Form;

inline constexpr Text homeUrl{"Settings", "Home-URL", ProgramInfo::homeUrl};
/// Where the user last chose a file for a page.
inline constexpr Text uploadFolder{"Settings", "UploadFolder", [] { return QString(); }};
/// A profile's file; the position, from 1, is how many were used after it.
inline constexpr Text recentProfile{"RecentProfiles", "File", [] { return QString(); }};
inline constexpr Text language{"Options", "Language", [] { return QStringLiteral("English"); }};

// clang-format off
inline constexpr Switch showSplash{
    "Options", "Show-Splash", OneZero, true, nullptr, "chkShowSplashScreen"};
inline constexpr Switch askOnExit{
    "Settings", "AskOnExit", OneZero, true, nullptr, "chkAskOnExit"};
inline constexpr Switch openLastDesk{
    "Settings", "OpenLastDesk", OneZero, false, nullptr, "chkOpenLastDesk"};
/// In pages, where the keyboard is in no field.
inline constexpr Switch backspaceGoesBack{
    "Settings", "BackspaceGoesBack", OneZero, true, nullptr, "chkBackspaceGoesBack"};
/// What pages are told of the desktop's colours, from the next start on.
inline constexpr Switch pagesFollowColours{
    "Settings", "PagesFollowColours", OneZero, true, nullptr, "chkPagesFollowColours"};
inline constexpr Switch killPopups{
    "Settings", "Kill-Popups", OneZero, {}, "mnuToolsKillPopUps", "chkKillPopups"};
inline constexpr Switch suppressScriptErrors{
    "Settings", "Suppress-Script-Errors", OneZero, false,
    "mnuToolsScriptErrorSuppress", "chkSuppressScriptErrors"};
inline constexpr Switch maximizeCatcher{
    "Settings", "Maximize-Catcher", OneZero, false, "mnuToolsMaximizeCatcher", "chkMaxCatcher"};
inline constexpr Switch smartPopupKiller{
    "Settings", "SmartPopupKiller", TrueFalse, true, "mnuToolsSmartPopupKiller"};
inline constexpr Switch addToHistory{
    "Settings", "AddToHistory", TrueFalse, true, "mnuToolsAddPagesToHistory"};
inline constexpr Switch addToCache{
    "Settings", "AddToCache", TrueFalse, true, "mnuToolsAddFilesToCache"};
inline constexpr Switch toolBar{
    "View", "Toolbar", TrueFalse, true, "mnuViewToolBarVisible"};
inline constexpr Switch favoriteLinks{
    "View", "FavoriteLinks", TrueFalse, true, "mnuViewToolBarFavoriteLinks"};
inline constexpr Switch tabStrip{
    "View", "TabStrip", TrueFalse, true, "mnuViewToolBarTabStrip"};
inline constexpr Switch addressBar{
    "View", "AddressBar", TrueFalse, true, "mnuViewToolBarAddressBar"};
inline constexpr Switch searchBar{
    "View", "SearchBar", TrueFalse, false, "mnuViewSearchBar"};
// clang-format on

/// The kind of profile that was saved last.
inline constexpr Switch profileWithWindows{"Settings", "ProfileWithWindows", TrueFalse, false};

/// Whether this is to be the desktop's browser was asked once.
inline constexpr Switch defaultBrowserAsked{"Settings", "DefaultBrowserAsked", TrueFalse, false};

/// 1: at the top, 2: at the bottom.
inline constexpr Number align{"ToolBar", "Align", 1};
/// Of the band whose position in the strip stands behind the key.
inline constexpr Switch bandNewRow{"ToolBar", "NewRow", TrueFalse, {}};
/// Of such a band, twips.
inline constexpr Number bandWidth{"ToolBar", "Width", {}};

/// Minutes after which a window that nobody has looked at gives its page up; 0: never.
inline constexpr Number sleepAfter{"Settings", "SleepAfter", 120};
inline constexpr int longestSleepAfter = 10'080;
/// Percent of the memory that was free at the start, above which the windows that nobody has looked
/// at for longest give their pages up; 0: never.
inline constexpr Number sleepMemory{"Settings", "SleepMemory", 60};
inline constexpr int mostSleepMemory = 100;

/// The switches with one place each; the options dialog reads and writes its own in this order.
inline constexpr std::array switches{
    &showSplash,      &askOnExit,        &killPopups,        &suppressScriptErrors,
    &maximizeCatcher, &smartPopupKiller, &addToHistory,      &addToCache,
    &toolBar,         &favoriteLinks,    &tabStrip,          &addressBar,
    &searchBar,       &openLastDesk,     &backspaceGoesBack, &pagesFollowColours};

WriteResult write(const QList<IniEntry> &entries);
}
