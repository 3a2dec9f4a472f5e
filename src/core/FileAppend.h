#pragma once

#include "WriteResult.h"

#include <QByteArray>
#include <QString>

/// Adds lines to the end of a text file: for files that only grow, where writing all of it anew
/// for each line would cost too much.
namespace FileAppend {
/// Puts `lines`, of which each has its line feed, to the end of the file by one write, or makes the
/// file, which only its owner may read then. They are there whole or not at all; only where the
/// program is killed or the machine ends within the write half of them may be, and then the last
/// line has no line feed, which the next call puts there first. Nothing is waited for to be on the
/// disk. Takes turns with `FileUpdate` in the same folder.
///
/// Only plain files, and links to them, are added to, and none in UTF-16. Failures are for the
/// caller to tell: whoever writes again and again would have each of them in the log.
WriteResult add(const QString &path, const QByteArray &lines);
}
