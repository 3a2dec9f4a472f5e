#pragma once

#include <span>

/// One line of the frame's menu bar. Items that follow with a greater depth are its submenu.
struct MenuEntry {
    /// A toggle inverts its own mark, and the setting that names it (`core/Settings.h`) stores
    /// that; a check item is marked by what it stands for.
    enum class Kind { Menu, Item, Check, Toggle, Separator };
    /// What there must be for an entry to be enabled; without a need it is left as it is.
    enum class Need {
        Nothing,
        Window,        ///< an active child of the frame
        Page,          ///< an active child that shows a page
        Pages,         ///< a child that shows a page
        ClipboardText, ///< as far as is known without asking another program
        ToolBar        ///< the strip of tool bars, shown
    };
    /// What an entry may have besides; most have little of it.
    struct Details {
        /// Accelerator in the toolkit's portable form, or null.
        const char *key = nullptr;
        /// The mark before the settings are applied.
        bool checked = false;
        Need need = Need::Nothing;
        /// Key of the tool bar button that stands for the entry: a click runs an item, the arrow
        /// opens a menu, and the button is pressed while a toggle is marked.
        const char *button = nullptr;
        /// The item that this one is another name for: it does the same.
        const char *same = nullptr;
    };

    int depth;
    Kind kind;
    const char *name;
    /// English text, "&" before the access key.
    const char *caption;
    Details details = {};
};

/// The whole menu bar in order, top to bottom and left to right: the one place that names its
/// items and captions, and tells what they need and share with the tool bars.
std::span<const MenuEntry> menuTable();
