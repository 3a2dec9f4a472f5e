#pragma once

#include <span>

/// One line of the frame's menu bar. Items that follow with a greater depth are its submenu.
struct MenuEntry {
    enum class Kind { Menu, Item, Check, Separator };

    int depth;
    Kind kind;
    const char *name;
    /// English text, "&" before the access key.
    const char *caption;
    /// Accelerator in the toolkit's portable form, or null.
    const char *shortcut = nullptr;
    /// A check item's mark before the settings are applied.
    bool checked = false;
};

/// The whole menu bar in order, top to bottom and left to right: the one place that names its
/// items, captions and accelerators.
std::span<const MenuEntry> menuTable();
