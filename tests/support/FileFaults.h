#pragma once

#include <functional>

/// Fails or ends the process at one of the file operations that follow, by standing in for the C
/// library's functions. A test program that links this uses it from one thread.
namespace FileFaults {
enum class Kind {
    /// The operation fails as on a full disk.
    Fail,
    /// It is the last for which there is room: a write gets half of its bytes out, and from then on
    /// no more can be written. Empty files and folders can still be made.
    FullDisk,
    /// It and all that follow fail as in a folder that may only be read.
    ReadOnly,
    /// The process ends before it, with exit status `killed`.
    Kill
};
inline constexpr int killed = 86;

/// Counts file operations from now on; the one with the number `at`, from 1, goes wrong.
void arm(Kind kind, int at);
/// Calls `what` before the operation with the number `at`, in its thread; nothing goes wrong.
void call(const std::function<void()> &what, int at);
/// Everything works again. True when it was reached.
bool disarm();

/// What a disk may be without.
enum Lack {
    None = 0,
    /// Files that have no name yet.
    UnnamedFiles = 1,
    /// Renaming that replaces nothing.
    NewNames = 2,
    Links = 4
};
/// Until it is set to `None`.
void setLack(int lack);
}
