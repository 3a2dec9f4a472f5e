#pragma once

/// Fails or ends the process at one of the file operations that follow, by standing in for the C
/// library's functions. A test program that links this uses it from one thread.
namespace FileFaults {
enum class Kind {
    /// The operation fails as on a full disk.
    Fail,
    /// The process ends before it, with exit status `killed`.
    Kill
};
inline constexpr int killed = 86;

/// Counts file operations from now on; the one with the number `at`, from 1, goes wrong.
void arm(Kind kind, int at);
/// Everything works again. True when it was reached.
bool disarm();
}
