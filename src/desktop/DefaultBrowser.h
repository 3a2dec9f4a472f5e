#pragma once

#include <functional>

class QObject;

/// Which program the desktop opens web addresses with, by the desktop's own tool (xdg-settings).
namespace DefaultBrowser {
enum class Is {
    /// Nobody can say, or nothing can be done: there is no such tool, or the desktop does not know
    /// this program, as one that is not installed.
    Unknown,
    Another,
    Orvane
};

/// Calls `found` later, never where `receiver` has gone. Waits for the tool some seconds at most.
void find(QObject *receiver, const std::function<void(Is)> &found);
/// Makes it this program; `done` as above, with false where that failed, which is logged.
void make(QObject *receiver, const std::function<void(bool isDone)> &done);
}
