#pragma once

#include <chrono>
#include <functional>

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
/// Asks the page of one that may, and puts it to sleep where it can be left without a word; else
/// `refused` is called, unless the window has gone. One that its user has come to meanwhile wakes
/// at once: a page that said yes took that for its end.
void ask(BrowserWindow &window, Why why, const std::function<void()> &refused = {});

/// How long nobody has looked at a window that is put to sleep for it; 0: it never is.
std::chrono::minutes after();
/// Of the memory that was free at the start, the percentage above which windows are put to sleep
/// for it; 0: they never are.
int memoryShare();
}
