#pragma once

#include "WriteResult.h"

#include <QString>
#include <QStringList>

/// Profile files: the addresses of the browser windows open at one moment. An INI file with the
/// keys URL1, URL2, ... in the section Profile_URLS and Count in the section URL_Count.
namespace UrlProfile {
/// The whole text of a profile, lines ended by CR LF. A line break or NUL in an address becomes a
/// blank, so that no address makes a line of its own.
QString text(const QStringList &addresses);

/// Replaces the file at `path` in one step, in UTF-8: a write that fails or is interrupted leaves
/// the old file.
WriteResult save(const QString &path, const QStringList &addresses);

/// The number stored as Count; 0 when there is none, when it is no number or too large for a
/// 32-bit integer, and when the file cannot be read.
qint32 count(const QString &path);
/// The same of what stands there as Count.
qint32 countIn(const QString &text);

/// What the keys URL1 up to URL`count` hold, in the order of their numbers, without the empty
/// ones: each as `readIni` gives it, at the cost of the keys that are there.
QStringList addresses(const QString &path, qint32 count);
}
