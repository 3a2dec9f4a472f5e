#include "IniStore.h"

#include "FileUpdate.h"
#include "IniText.h"
#include "Log.h"
#include "TextRules.h"

#include <QStringConverter>
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

QByteArray changed(const QByteArray &old, const QList<IniEntry> &entries)
{
    if (const std::optional<QByteArray> all = putAtOnce(old, entries))
        return *all;
    QByteArray bytes = old;
    for (const IniEntry &entry : entries)
        bytes = IniText::put(bytes, {entry.section, entry.key}, entry.value);
    return bytes;
}

// Single bytes put in among pairs would spoil all that follows.
bool isSixteenBits(QByteArrayView file)
{
    return file.startsWith("\xff\xfe") || file.startsWith("\xfe\xff");
}

QByteArray asUtf8(QByteArrayView file)
{
    // The mark tells the order.
    QStringDecoder decoder(QStringDecoder::Utf16);
    return QString(decoder(file)).toUtf8();
}
}

std::optional<QByteArray> readIniFile(const QString &path)
{
    const std::optional<QByteArray> file = FileUpdate::readAll(path);
    return file && isSixteenBits(*file) ? asUtf8(*file) : file;
}

QString readIni(const QString &section, const QString &key, const QString &text,
                const QString &path)
{
    if (const std::optional<QByteArray> file = readIniFile(path)) {
        if (const auto value = IniText::value(*file, {section, key}, longestValue))
            return *value;
    }
    return firstCharacters(text, longestValue);
}

QStringList readIniValues(const QString &section, const QStringList &keys, const QString &path)
{
    QStringList values(keys.size());
    const std::optional<QByteArray> file = readIniFile(path);
    if (!file)
        return values;
    const QList<IniText::Place> places = IniText::findKeys(*file, section, keys);
    for (qsizetype i = 0; i < keys.size(); ++i)
        values[i] = IniText::valueAt(*file, places.at(i), longestValue).value_or(QString());
    return values;
}

WriteResult writeIni(const QString &section, const QString &key, const QString &value,
                     const QString &path)
{
    return writeIniEntries({{section, key, value}}, path);
}

WriteResult changeIniFile(const QString &path,
                          const std::function<QByteArray(const QByteArray &)> &change)
{
    bool sixteenBits = false;
    const WriteResult result = FileUpdate::change(path, [&](const QByteArray &old) {
        sixteenBits = isSixteenBits(old);
        return sixteenBits ? std::nullopt : std::optional(change(old));
    });
    if (!sixteenBits)
        return result;
    qCWarning(lcFiles) << path << "is UTF-16 and so stays as it is";
    return WriteResult(WriteResult::Failure::SixteenBits);
}

WriteResult writeIniEntries(const QList<IniEntry> &entries, const QString &path)
{
    const auto refused = std::find_if(entries.cbegin(), entries.cend(), [](const IniEntry &entry) {
        return !IniText::canHold({entry.section, entry.key});
    });
    if (refused != entries.cend()) {
        qCWarning(lcFiles) << "no INI file can hold the key" << refused->key << "of the section"
                           << refused->section;
        return WriteResult(WriteResult::Failure::Refused);
    }
    if (entries.isEmpty())
        return {};
    return changeIniFile(path, [&](const QByteArray &old) { return changed(old, entries); });
}
