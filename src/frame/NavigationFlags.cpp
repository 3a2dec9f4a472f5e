#include "NavigationFlags.h"

#include "Frame.h"
#include "Settings.h"
#include "WebBrowser.h"

namespace {

constexpr int neither = NavFlags::NoHistory + NavFlags::NoWriteToCache;

/// The flags by the two marks, and by the toggle that was used last.
struct FlagRow {
    bool history;
    bool cache;
    int byHistory;
    /// At the start too.
    int byCache;
};

constexpr FlagRow flagRows[] = {
    {true, true, 0, 0},
    {false, false, neither, neither},
    {false, true, NavFlags::NoHistory, NavFlags::NoHistory},
    // Without the cache alone, pages stay out of the history instead, until the history is toggled:
    // on purpose.
    {true, false, NavFlags::NoWriteToCache, NavFlags::NoHistory},
};

void setFlags(Frame &frame, int FlagRow::*column)
{
    const bool history = frame.isOn(Settings::addToHistory);
    const bool cache = frame.isOn(Settings::addToCache);
    for (const FlagRow &row : flagRows) {
        if (row.history == history && row.cache == cache)
            frame.setNavigationFlags(row.*column);
    }
}

}

void registerNavigationFlags(Frame &frame)
{
    frame.handleToggle(frame.itemOf(Settings::addToHistory),
                       [&frame](bool) { setFlags(frame, &FlagRow::byHistory); });
    frame.handleToggle(frame.itemOf(Settings::addToCache),
                       [&frame](bool) { setFlags(frame, &FlagRow::byCache); });
}

void applyNavigationFlags(Frame &frame)
{
    setFlags(frame, &FlagRow::byCache);
}
