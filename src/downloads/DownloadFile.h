#pragma once

#include "Download.h"
#include "WriteResult.h"

#include <QList>
#include <QSet>
#include <QStringList>
#include <optional>

/// The list of downloads as a file: a section for each, in the order in which they began. What else
/// stands there stays.
namespace DownloadFile {
QString path();

/// All downloads in it, the latest first, as they were when they were written: those under way may
/// have ended since, or be another program's. None where it is missing; nothing where it is there
/// and cannot be read.
std::optional<QList<Download>> read(const QString &path);

/// The stages that it names; nothing where it cannot be read.
std::optional<QSet<QString>> stages(const QString &path);

struct Changes {
    /// New ones or other states of known ones.
    QList<Download> entries;
    QSet<QString> removed;
};

/// Puts the changes over what the file has by then: another program may have written meanwhile.
/// Beyond the number that the list keeps, the oldest that are over go; `trimmed` gets the stages of
/// those.
WriteResult write(const QString &path, const Changes &changes, QStringList &trimmed);
}
