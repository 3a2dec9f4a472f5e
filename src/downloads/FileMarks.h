#pragma once

struct Download;

/// Where a file came from, in the attributes that file managers show ("user.xdg.origin.url" and
/// "user.xdg.referrer.url").
namespace FileMarks {
/// Marks an open file with the download's address and page, without names, passwords and places in
/// them; where it is to leave no trace, what is there of the kind goes. A disk that keeps no such
/// attributes does without.
void set(int file, const Download &download);
}
