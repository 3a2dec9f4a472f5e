#include "modINI.h"

#include "FileUpdate.h"
#include "IniText.h"
#include "Log.h"
#include "TextRules.h"

#include <algorithm>

namespace {
constexpr int longestValue = 999;

// A list is many keys of one section: one pass instead of one for each.
std::optional<QByteArray> putAtOnce(const QByteArray &file, const QList<IniEntry> &entries)
{
    if (entries.size() < 2)
        return {};
    QStringList keys;
    QStringList values;
    for (const IniEntry &entry : entries) {
        if (entry.section != entries.first().section)
            return {};
        keys.append(entry.key);
        values.append(entry.value);
    }
    return IniText::putKeys(file, entries.first().section, keys, values);
}
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

QStringList ReadINIValues(const QString &section, const QStringList &keys, const QString &path)
{
    QStringList values(keys.size());
    const std::optional<QByteArray> file = FileUpdate::readAll(path);
    if (!file)
        return values;
    const QList<IniText::Place> places = IniText::findKeys(*file, section, keys);
    for (qsizetype i = 0; i < keys.size(); ++i)
        values[i] = IniText::valueAt(*file, places.at(i), longestValue).value_or(QString());
    return values;
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
        if (const std::optional<QByteArray> all = putAtOnce(old, entries))
            return all;
        QByteArray bytes = old;
        for (const IniEntry &entry : entries)
            bytes = IniText::put(bytes, {entry.section, entry.key}, entry.value);
        return std::optional(bytes);
    });
}
