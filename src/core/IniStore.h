#pragma once

#include "WriteResult.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

/// The file's bytes as the functions below see them: those of a UTF-16 file, which its byte order
/// mark tells, as UTF-8. Nothing when it is missing or cannot be read.
std::optional<QByteArray> readIniFile(const QString &path);

/// The value of `key` in `section` of the INI file at `path`, or `text` where file, section or key
/// are missing; either is cut to 999 characters (a surrogate pair is one). A stored empty value is
/// returned as it is, quotes are part of a value, a NUL ends it. The file is read at every call:
/// what anyone wrote is seen by the next reader.
QString readIni(const QString &section, const QString &key, const QString &text,
                const QString &path);

/// What `readIni` returns for each of the keys, with `text` empty, from one reading of the file.
QStringList readIniValues(const QString &section, const QStringList &keys, const QString &path);

/// Puts `value` under `key` of `section`, leaving every other byte of the file as it is. A line
/// break (CR LF, CR or LF) or NUL in the value becomes one blank, so that no value makes a line of
/// its own. It fails, and the old file is untouched, when the file cannot be read or replaced, when
/// its folder is missing, when the file is UTF-16 by its byte order mark, or when section or key is
/// a name that would not be found again: with a line break or NUL, a section with "]", a key that
/// is empty, has "=" or begins with "[" or ";".
WriteResult writeIni(const QString &section, const QString &key, const QString &value,
                     const QString &path);

/// Puts what `change` makes of the file's bytes in their place, as `FileUpdate::change` does. It
/// fails, and the old file is untouched, where that fails and when the file is UTF-16.
WriteResult changeIniFile(const QString &path,
                          const std::function<QByteArray(const QByteArray &)> &change);

struct IniEntry {
    QString section;
    QString key;
    QString value;
};

/// Writes all entries in order in one locked replacement of the file: all of them or, with one
/// that `writeIni` would refuse, none.
WriteResult writeIniEntries(const QList<IniEntry> &entries, const QString &path);
