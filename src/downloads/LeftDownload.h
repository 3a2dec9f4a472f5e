#pragma once

#include "Download.h"

#include <optional>

/// What an earlier program left of its downloads.
namespace LeftDownload {
/// The download as it is now, `stored` being how it stood in the list's file: one that was under
/// way is unfinished, or done where its file is in its place, and the bytes are those that are
/// there. Nothing for one that another program has.
std::optional<Download> asLeft(const Download &stored);

/// All of its bytes are there, and only its name is missing.
bool isWhole(const Download &download);
}
