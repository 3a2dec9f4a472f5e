#pragma once

#include "MenuTable.h"

struct ContextTarget;

/// One line of the menu that opens on a page. What it needs of the window is its command's to say
/// (`ContextCommand`).
struct ContextEntry {
    using Test = bool (*)(const ContextTarget &target);

    /// Kinds: Item, Check and Separator. One with `same` does what that item of the menu bar does.
    MenuEntry item;
    /// Whether the line is in the menu at all. Separators, which have none, stand between lines.
    Test stands = nullptr;
    /// Whether it is enabled; null: wherever it stands.
    Test works = nullptr;
    /// Whether a check item is marked; null: its command says so.
    Test isMarked = nullptr;
};

/// The lines for all that a menu can be opened on, from top to bottom; those that apply make the
/// menu. Lines that can stand together have different access keys.
std::span<const ContextEntry> contextTable();
