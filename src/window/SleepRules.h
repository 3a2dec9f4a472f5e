#pragma once

#include <chrono>

class BrowserWindow;

/// Who may be put to sleep: decided here alone. `BrowserWindow::fallAsleep` does it.
namespace SleepRules {
enum class Why {
    /// Nobody has looked at the window for a time.
    Unseen,
    /// There is too little memory, or room for the pages that others wait for.
    Short,
    /// The user wants it of all windows but his.
    OthersOfUser,
    /// The user wants it of this one.
    User
};

bool maySleep(const BrowserWindow &window, Why why);

/// How long nobody has looked at a window that is put to sleep for it; 0: it never is.
std::chrono::minutes after();
/// Of the memory that was free at the start, the percentage above which windows are put to sleep
/// for it; 0: they never are.
int memoryShare();
}
