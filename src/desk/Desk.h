#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

/// A window of a desk: what it needs to come back as it was.
struct DeskWindow {
    enum class State { Normal, Minimized, Maximized };

    /// As a profile has it; empty for a window that was nowhere yet.
    QString address;
    QString title;
    /// Where the window is in its normal state, pixels inside the frame's area. Invalid: no place
    /// is known, and it gets one of a cascade.
    QRect place = {};
    State state = State::Normal;
    /// How many windows are behind it: 0 for the backmost, and no two have the same.
    int order = 0;
    /// How far its page is scrolled, CSS pixels.
    QPoint scroll = {};
    /// The page's zoom factor.
    double zoom = 1;
    bool isMuted = false;

    bool operator==(const DeskWindow &) const = default;
};

/// All open windows at one moment, and the frame around them.
struct Desk {
    /// In the order in which they were loaded.
    QList<DeskWindow> windows;
    /// The index of the active window, -1 where there is none.
    int active = -1;
    /// The place of the frame in its normal state, pixels of the screen; invalid: not known.
    QRect frame = {};
    bool isFrameMaximized = false;

    /// Whether it is more than a list of addresses.
    bool hasPlaces() const;

    bool operator==(const Desk &) const = default;
};
