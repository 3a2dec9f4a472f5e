#pragma once

#include "WriteResult.h"

#include <QByteArray>
#include <QString>

#include <functional>

class QFileDevice;

/// The one way in which the program writes files. What is written is there whole or not at all,
/// whatever ends the program or fills the disk meanwhile, and an old file stays as it was until
/// then. Every failure is logged.
namespace FileWriter {
/// Puts the content out; false where it has none. That the device takes no more need not be looked
/// at.
using Writer = std::function<bool(QFileDevice &device)>;

/// When the bytes are on the disk: at once, or, where thousands of files come in a row, with
/// `settle` for all of them.
enum class Sync { Now, Later };

/// Where the bytes of `path` really are: the end of a link, also of one that leads nowhere.
QString target(const QString &path);

/// Makes the file or replaces it. A link stays one, and an old file's permissions are kept. Only
/// plain files are replaced, and only those that may be written to. The folder must be there.
WriteResult write(const QString &path, const Writer &writer);
WriteResult write(const QString &path, const QByteArray &bytes);

/// Makes a new file: what is there under that name, even a link that leads nowhere, stays, and
/// the failure is `Taken`, which is not logged.
WriteResult create(const QString &path, const Writer &writer, Sync sync = Sync::Now);
WriteResult create(const QString &path, const QByteArray &bytes, Sync sync = Sync::Now);

/// Waits until the names in that folder are on the disk: that a file is in its place is there only
/// when its folder is.
void syncFolder(const QString &folder);
/// Waits until everything written on the disk of that folder is there to stay.
void settle(const QString &folder);
}
