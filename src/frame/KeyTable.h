#pragma once

#include <span>

class Text;

/// A command that no menu has: run by keys alone, with its handler in the command table.
struct PlainCommand {
    const char *name;
    /// What it does, in words; "%1" stands for its number.
    const Text *caption;
    /// The menu that it is listed with.
    const char *menu;
    /// Of a window, from 1; 0: none.
    int number = 0;
};

/// A key that no menu shows, in the toolkit's portable form, and the command that it runs: a menu
/// item's, while that is enabled, or a plain one.
struct KeyEntry {
    const char *key;
    const char *command;
};

std::span<const PlainCommand> plainCommands();
/// Beside the keys of the menu table. A key stands once, in one of the two.
std::span<const KeyEntry> keyTable();
