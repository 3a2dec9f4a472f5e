#pragma once

#include <QStringList>
#include <functional>

class BrowserWindow;
struct ContextTarget;

/// What a line of the menu of a page does, and what only its command knows of the line.
struct ContextCommand {
    /// Where the menu was opened. The window is there, and the active one, as a line runs.
    struct Place {
        BrowserWindow &window;
        const ContextTarget &target;
    };

    /// `choice`: which of the captions it was.
    std::function<void(const Place &, int choice)> run;
    /// The texts of the line, which stands once for each, made of its caption in the table.
    std::function<QStringList(const Place &, const QString &caption)> captions = {};
    std::function<bool(const Place &)> isEnabled = {};
    std::function<bool(const Place &)> isMarked = {};
};
