#pragma once

#include <QString>

/// What killed programs left on the way to its place. Only names of the program's own shapes are
/// looked at, and of those none that a running program has locked.
namespace Leftovers {
enum class Depth { Folder, Tree };

/// Stages of files and folders. In the folder itself also those of older programs, which were
/// named by the program's own files: "Settings.ini.aBcDeF".
void removeIn(const QString &folder, Depth depth = Depth::Folder);

/// The folders that the notes of StageFolder tell of, wherever they are. A note stays while its
/// disk is away.
void removeNoted();
}
