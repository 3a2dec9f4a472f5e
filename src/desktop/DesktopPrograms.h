#pragma once

#include <QStringList>
#include <functional>

/// Files handed to the programs that the desktop has for them. Only for what the user asks for
/// himself, never for a page. Nothing here waits for another program; `failed` is called, soon or
/// late, where none took the file.
namespace DesktopPrograms {
using Failed = std::function<void()>;

/// Opens a file that is not `isRunnable`, or a folder.
void open(const QString &path, const Failed &failed);
/// Shows the folders of `files` with these selected, in the desktop's file manager; where it takes
/// no selection, the first one's folder.
void showInFolder(const QStringList &files, const Failed &failed);
}
