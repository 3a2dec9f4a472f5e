#pragma once

#include <QString>
#include <functional>

class QAction;
class QMdiSubWindow;
class QWidget;
class WindowTabs;

namespace Settings {
struct Switch;
}

/// How a new browser window comes up.
enum class WindowState {
    /// As the frame's children do: maximized while the active one is.
    AsOthers,
    Maximized,
    /// Not in front: the active window stays so, with the keyboard. As others where there is none.
    Behind,
};

/// What is kept of what a window shows: of a private one nothing that outlasts the last of them.
enum class Privacy { Ordinary, Private };

/// What the rest of the program asks of the one frame window.
class Frame {
public:
    using Handler = std::function<void()>;
    using ToggleHandler = std::function<void(bool on)>;

    virtual ~Frame() = default;

    /// The frame as owner of dialogs.
    virtual QWidget *window() = 0;

    /// Adds a browser window to the frame's children; the frame owns it from then on.
    virtual void adopt(QMdiSubWindow *child) = 0;
    /// The active child; also while the frame itself is minimized or not active. Null when there
    /// is no child.
    virtual QMdiSubWindow *activeChild() const = 0;

    /// A new browser window on `url` (empty: the home page).
    virtual void openBrowserWindow(const QString &url, WindowState state) = 0;
    /// The same, and it is private (empty: a blank page).
    virtual void openPrivateWindow(const QString &url, WindowState state) = 0;
    /// One that is as private as what it is opened from.
    void openWindowLike(Privacy privacy, const QString &url, WindowState state);
    /// Sends the active window to `url`, or opens a first, maximized one.
    virtual void navigateActive(const QString &url) = 0;
    /// The state to open a window with: maximized when there is no active child.
    virtual WindowState newWindowState() const = 0;
    /// Opens every address of a profile file; false when there is none.
    virtual bool openProfile(const QString &file, bool quiet) = 0;

    virtual WindowTabs &windowTabs() = 0;
    /// The shared address bar: its text, and its list of reached addresses.
    virtual void setAddressText(const QString &url) = 0;
    virtual void addAddress(const QString &url, bool showText) = 0;
    /// Runs `change`, by which windows come or go that the user did not call: the keyboard, and
    /// the text that he is typing, stay where they are if that is a field of the frame's own.
    virtual void keepTyping(const Handler &change) { change(); }

    /// The action of a menu item by its name; never null for a name of the menu table.
    virtual QAction *menuItem(const QString &name) const = 0;
    /// The item whose mark is what a switch is at run time.
    QAction *itemOf(const Settings::Switch &setting) const;
    /// False in a frame without menus.
    bool isOn(const Settings::Switch &setting) const;
    /// Gives a menu item its handler.
    virtual void handle(const QString &menuName, const Handler &handler) = 0;
    /// What a toggle does besides inverting and storing its mark, which all do by themselves: told
    /// the new mark before that is stored. What is so while the mark is set, whoever sets it,
    /// follows `QAction::toggled` instead.
    virtual void handleToggle(const QAction *item, const ToggleHandler &handler) = 0;
    /// Runs `rule` before the menu of that name, or one that it is in, opens, and whenever the
    /// active window or the clipboard changes: for what the menu table cannot say.
    virtual void beforeOpening(const QString &menuName, const Handler &rule) = 0;
    /// Runs an item's handler, also while the item is disabled.
    virtual void run(const QString &menuName) = 0;

    /// Navigation flags for every window: 2 keeps pages out of the history, 8 out of the cache.
    virtual int navigationFlags() const = 0;
    virtual void setNavigationFlags(int flags) = 0;
};
