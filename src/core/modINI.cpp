#include "modINI.h"

#include "FileUpdate.h"
#include "IniText.h"
#include "Log.h"
#include "TextRules.h"

#include <algorithm>

namespace {
constexpr int longestValue = 999;
}

QString ReadINI(const QString &section, const QString &key, const QString &text,
                const QString &path)
{
    if (const std::optional<QByteArray> file = FileUpdate::readAll(path)) {
        if (const auto value = IniText::value(*file, {section, key}, longestValue))
            return *value;
    }
    return firstCharacters(text, longestValue);
}

bool WriteINI(const QString &section, const QString &key, const QString &value, const QString &path)
{
    return WriteINIEntries({{section, key, value}}, path);
}

bool WriteINIEntries(const QList<IniEntry> &entries, const QString &path)
{
    const auto refused = std::find_if(entries.cbegin(), entries.cend(), [](const IniEntry &entry) {
        return !IniText::canHold({entry.section, entry.key});
    });
    if (refused != entries.cend()) {
        qCWarning(lcFiles) << "no INI file can hold the key" << refused->key << "of the section"
                           << refused->section;
        return false;
    }
    if (entries.isEmpty())
        return true;
    return FileUpdate::change(path, [&entries](const QByteArray &old) {
        QByteArray bytes = old;
        for (const IniEntry &entry : entries)
            bytes = IniText::put(bytes, {entry.section, entry.key}, entry.value);
        return std::optional(bytes);
    });
}
