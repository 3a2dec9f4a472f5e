#include "SitePermissions.h"

#include "AppFolder.h"
#include "IniStore.h"
#include "IniText.h"
#include "Log.h"

#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
using IniText::Section;
using SitePermissions::Answer;
using SitePermissions::Word;

/// What the program writes has less than half of this.
constexpr qint64 largestFile = 2 * 1024 * 1024;

struct Key {
    Permission permission;
    const char *name;
};
constexpr Key keys[] = {
    {Permission::Place, "Place"},         {Permission::Notifications, "Notifications"},
    {Permission::Camera, "Camera"},       {Permission::Microphone, "Microphone"},
    {Permission::Screen, "Screen"},       {Permission::Clipboard, "Clipboard"},
    {Permission::Fonts, "Fonts"},         {Permission::Pointer, "Pointer"},
    {Permission::Downloads, "Downloads"},
};

/// Characters: more than any of the words has.
constexpr int longestWord = 16;
constexpr auto allow = "Allow"_L1;
constexpr auto refuse = "Refuse"_L1;

constexpr auto programKey = "Program-"_L1;

/// As the network allows them; longer ones than any in use are none.
bool isScheme(const QString &text)
{
    static const QRegularExpression form(u"^[a-z][a-z0-9+.-]{0,63}$"_s);
    return form.match(text).hasMatch();
}

QString keyOf(Permission permission, const QString &scheme)
{
    if (permission == Permission::Program)
        return programKey + scheme;
    const auto *key = std::find_if(std::begin(keys), std::end(keys), [permission](const Key &each) {
        return each.permission == permission;
    });
    return QString::fromLatin1(key->name);
}

/// A value ends at a NUL.
std::optional<Word> wordOf(QByteArrayView text)
{
    if (const qsizetype end = text.indexOf('\0'); end >= 0)
        text = text.first(end);
    if (text.compare(allow.latin1(), Qt::CaseInsensitive) == 0)
        return Word::Allow;
    if (text.compare(refuse.latin1(), Qt::CaseInsensitive) == 0)
        return Word::Refuse;
    return {};
}

bool isUsable(const QString &path)
{
    if (QFileInfo(path).size() <= largestFile)
        return true;
    qCWarning(lcFiles) << path << "is too large to be answers of the user";
    return false;
}

std::optional<AskingSite> siteOf(const Section &section)
{
    return AskingSite::fromName(QString::fromUtf8(section.name));
}

/// `bytes` without [begin, end) of each, which ascend.
QByteArray without(const QByteArray &bytes, const QList<std::pair<qsizetype, qsizetype>> &parts)
{
    QByteArray result;
    qsizetype done = 0;
    for (const auto &[begin, end] : parts) {
        result += QByteArrayView(bytes).sliced(done, begin - done);
        done = end;
    }
    return result + bytes.sliced(done);
}

QByteArray trimmed(const QByteArray &bytes)
{
    const QList<Section> sections = IniText::sections(bytes);
    QSet<QString> names;
    for (const Section &section : sections) {
        if (const auto site = siteOf(section))
            names.insert(site->name());
    }
    qsizetype over = names.size() - SitePermissions::mostSites;
    QSet<QString> removed;
    for (const Section &section : sections) {
        if (over <= 0)
            break;
        const auto site = siteOf(section);
        if (!site || removed.contains(site->name()))
            continue;
        removed.insert(site->name());
        --over;
    }
    QList<std::pair<qsizetype, qsizetype>> parts;
    for (const Section &section : sections) {
        const auto site = siteOf(section);
        if (site && removed.contains(site->name()))
            parts.append({section.begin, section.keysEnd});
    }
    return without(bytes, parts);
}

/// The lines of those keys, or all of a section of which nothing else is left.
QList<std::pair<qsizetype, qsizetype>> linesOf(const QByteArray &bytes, const Section &section,
                                               const QStringList &wanted)
{
    QList<std::pair<qsizetype, qsizetype>> lines;
    for (const Section::Key &key : section.keys) {
        if (!wanted.contains(QString::fromUtf8(key.name), Qt::CaseInsensitive))
            continue;
        const qsizetype at = key.name.data() - bytes.constData();
        const qsizetype end = bytes.indexOf('\n', at);
        lines.append({bytes.lastIndexOf('\n', at) + 1, end < 0 ? bytes.size() : end + 1});
    }
    if (!lines.isEmpty() && lines.size() == section.keys.size())
        return {{section.begin, section.keysEnd}};
    return lines;
}

QByteArray removed(const QByteArray &bytes, const QList<Answer> &answers)
{
    QHash<QString, QStringList> wanted;
    for (const Answer &answer : answers)
        wanted[answer.site.name()].append(keyOf(answer.permission, answer.scheme));
    QList<std::pair<qsizetype, qsizetype>> parts;
    for (const Section &section : IniText::sections(bytes)) {
        const auto site = siteOf(section);
        if (site && wanted.contains(site->name()))
            parts += linesOf(bytes, section, wanted.value(site->name()));
    }
    return without(bytes, parts);
}

bool mayBeKept(const AskingSite &site, Permission permission, const QString &scheme)
{
    return site.canBeKept()
        && (permission == Permission::Program ? isScheme(scheme) : scheme.isEmpty());
}

/// What the section says of other programs.
QList<Answer> programsOf(const Section &section, const AskingSite &site)
{
    QList<Answer> result;
    QSet<QString> seen;
    for (const Section::Key &key : section.keys) {
        const QString name = QString::fromUtf8(key.name);
        const QString scheme = name.mid(programKey.size()).toLower();
        if (!name.startsWith(programKey, Qt::CaseInsensitive) || !isScheme(scheme)
            || seen.contains(scheme))
            continue;
        seen.insert(scheme);
        if (const auto word = wordOf(section.value(name.toUtf8())))
            result.append({site, Permission::Program, *word, scheme});
    }
    return result;
}

/// Of a file that others made too large, what its first sites say.
QList<Answer> listed(const QByteArray &file)
{
    QList<Answer> result;
    QSet<QString> seen;
    for (const Section &section : IniText::sections(file)) {
        const auto site = siteOf(section);
        if (!site || seen.contains(site->name()) || seen.size() == SitePermissions::mostSites)
            continue;
        seen.insert(site->name());
        for (const Key &key : keys) {
            if (const auto word = wordOf(section.value(key.name)))
                result.append({*site, key.permission, *word});
        }
        result += programsOf(section, *site);
    }
    return result;
}
}

namespace SitePermissions {

QString path()
{
    return AppFolder::appData(u"Permissions.ini"_s);
}

std::optional<Word> answer(const AskingSite &site, Permission permission, const QString &scheme)
{
    if (!mayBeKept(site, permission, scheme) || !isUsable(path()))
        return {};
    const QByteArray file = readIniFile(path()).value_or(QByteArray());
    const auto value = IniText::value(file, {site.name(), keyOf(permission, scheme)}, longestWord);
    const std::optional<Word> word = value ? wordOf(value->toUtf8()) : std::nullopt;
    if (!word || IniText::sections(file).size() <= mostSites)
        return word;
    // What is obeyed is to be seen, and so can be taken back.
    return listed(file).contains({site, permission, *word, scheme}) ? word : std::nullopt;
}

WriteResult keep(const AskingSite &site, const QList<Permission> &permissions, Word word,
                 const QString &scheme)
{
    const bool mayBe = std::all_of(permissions.begin(), permissions.end(),
                                   [&](Permission each) { return mayBeKept(site, each, scheme); });
    if (!mayBe || !isUsable(path()))
        return WriteResult(WriteResult::Failure::Refused);
    return changeIniFile(path(), [&](const QByteArray &old) {
        QByteArray bytes = old;
        for (const Permission permission : permissions) {
            const IniText::Name name{site.name(), keyOf(permission, scheme)};
            bytes = IniText::put(bytes, name, word == Word::Allow ? allow : refuse);
        }
        return trimmed(bytes);
    });
}

QList<Answer> all()
{
    return isUsable(path()) ? listed(readIniFile(path()).value_or(QByteArray())) : QList<Answer>();
}

WriteResult remove(const QList<Answer> &answers)
{
    if (!QFileInfo::exists(path()))
        return {};
    return changeIniFile(path(), [&](const QByteArray &old) { return removed(old, answers); });
}

WriteResult removeAll()
{
    if (!QFileInfo::exists(path()))
        return {};
    return changeIniFile(path(), [](const QByteArray &old) {
        const QList<Section> sections = IniText::sections(old);
        return sections.isEmpty() ? old : old.first(sections.first().begin);
    });
}

}
