#pragma once

#include "WriteResult.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <optional>

/// Whole files read and replaced. Only plain files (and links to them) count: a directory, a pipe
/// or a device in a file's place is as good as unreadable.
namespace FileUpdate {
/// The bytes of the file; nothing when it is missing, unreadable or larger than 256 MB.
std::optional<QByteArray> readAll(const QString &path);

/// Gets the file's bytes (none when it is missing) and gives those to put in their place, or
/// nothing to leave the file alone.
using Change = std::function<std::optional<QByteArray>(const QByteArray &)>;

/// Reads, changes and replaces the file as one step: no other call, in whatever process, comes in
/// between, and a crash leaves the old file or the new one. Bytes that stay the same are not
/// written. A link stays one, and the file keeps its permissions. It fails, and the old file is
/// untouched, when `change` gave nothing, when the file is there but cannot be read or replaced,
/// or when its folder is missing. `change` itself must not write in the same folder: it would wait
/// for its own lock.
WriteResult change(const QString &path, const Change &change);

/// The same with bytes that do not depend on the old ones.
WriteResult replace(const QString &path, const QByteArray &bytes);

/// Leaves nothing in a plain file, however large it has become; one that is missing stays so.
WriteResult clear(const QString &path);
}
