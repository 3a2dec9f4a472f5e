#pragma once

#include <QList>
#include <QString>

/// The value of `key` in `section` of the INI file at `path`, cut to 999 characters, or `text`
/// where file, section or key are missing. A stored empty value is returned as it is. The file is
/// read at every call: what anyone wrote is seen by the next reader.
QString ReadINI(const QString &section, const QString &key, const QString &text,
                const QString &path);

/// Puts `value` under `key` of `section`, leaving every other byte of the file as it is. False,
/// and the old file untouched, when the file cannot be replaced or its folder is missing.
bool WriteINI(const QString &section, const QString &key, const QString &value,
              const QString &path);

struct IniEntry
{
    QString section;
    QString key;
    QString value;
};

/// Writes all entries in order in one locked replacement of the file.
bool WriteINIEntries(const QList<IniEntry> &entries, const QString &path);
