#pragma once

#include <QString>

/// An error that a page's script did not catch.
struct ScriptError {
    QString message;
    /// Both from 1; 0: unknown.
    int line = 0;
    int column = 0;
    /// The script's address, or the page's for a script of its own.
    QString address;

    bool operator==(const ScriptError &other) const = default;
};
