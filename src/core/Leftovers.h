#pragma once

#include <QString>
#include <atomic>
#include <functional>

/// What killed programs left on the way to its place. Only names of the program's own shapes are
/// looked at, and of those none that a running program has locked.
namespace Leftovers {
enum class Depth { Folder, Tree };

extern const std::atomic<bool> neverStops;

/// Stages of files and folders. In the folder itself also those of older programs, which were
/// named by the program's own files: "Settings.ini.aBcDeF". A tree may be large and its disk slow:
/// once `stop` is true, no more of it is looked at.
void removeIn(const QString &folder, Depth depth = Depth::Folder,
              const std::atomic<bool> &stop = neverStops);

/// Whether a folder that a download was in, by its path, is needed for going on with it.
using IsNeeded = std::function<bool(const QString &folder)>;

/// The folders that the notes of StageFolder tell of, wherever they are, but for those of downloads
/// that are needed. A note stays while its disk is away.
void removeNoted(const IsNeeded &isNeeded);
}
