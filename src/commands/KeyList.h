#pragma once

#include <QKeySequence>
#include <QList>

class Frame;

/// What a key does, in words of the current language.
struct KeyRow {
    /// The menu or the place.
    QString group;
    QString what;
    QList<QKeySequence> keys;
    /// They act wherever the keyboard is in the frame.
    bool isEverywhere = true;
};

/// All keys of the program, menu by menu and then place by place: of the menus, of the key table,
/// of the area of windows, and of what has keys of its own.
QList<KeyRow> allKeys(const Frame &frame);
