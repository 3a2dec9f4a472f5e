#include "SiteZoom.h"

#include "AppFolder.h"
#include "IniStore.h"
#include "IniText.h"
#include "Log.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QUrl>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr auto section = "Sites"_L1;
/// What the program writes has less than half of this.
constexpr qint64 largestFile = 1024 * 1024;
/// As long as a name of the network can be.
constexpr qsizetype longestHost = 253;
/// Characters of a value that are looked at: more than a percentage has.
constexpr int longestValue = 16;

bool isUsable(const QString &path)
{
    if (QFileInfo(path).size() <= largestFile)
        return true;
    qCWarning(lcFiles) << path << "is too large to be what the user chose for sites";
    return false;
}

IniText::Name nameOf(const QString &site)
{
    return {section, site};
}

bool isOfSites(const IniText::Section &each)
{
    return QLatin1StringView(each.name).compare(section, Qt::CaseInsensitive) == 0;
}

/// What a value says of its site.
int percentOf(const QString &value)
{
    bool isNumber = false;
    const int percent = value.toInt(&isNumber);
    return isNumber && percent >= SiteZoom::least && percent <= SiteZoom::most ? percent
                                                                               : SiteZoom::usual;
}

using Key = IniText::Section::Key;

/// The keys of the sites, in the file's order.
QList<Key> keysOf(const QByteArray &bytes)
{
    const QList<IniText::Section> sections = IniText::sections(bytes);
    const auto sites = std::find_if(sections.begin(), sections.end(), isOfSites);
    return sites == sections.end() ? QList<Key>() : sites->keys;
}

QString foldedName(const Key &key)
{
    return QString::fromUtf8(key.name).toLower();
}

/// In one pass: by hand a file may have a hundred thousand lines, and the user waits.
QByteArray without(const QByteArray &bytes, const QSet<QString> &foldedSites)
{
    QByteArray result;
    qsizetype taken = 0;
    const QList<Key> keys = keysOf(bytes);
    for (const Key &key : keys) {
        if (!foldedSites.contains(foldedName(key)))
            continue;
        // The section's header is before it.
        const qsizetype begin = bytes.lastIndexOf('\n', key.name.data() - bytes.data() - 1) + 1;
        const qsizetype end = bytes.indexOf('\n', key.value.data() - bytes.data());
        result.append(QByteArrayView(bytes).sliced(taken, begin - taken));
        taken = end < 0 ? bytes.size() : end + 1;
    }
    return result.append(QByteArrayView(bytes).sliced(taken));
}

/// The first ones go where there are too many, but not the one that was chosen last.
QByteArray trimmed(const QByteArray &bytes, const QString &chosen)
{
    const QList<Key> keys = keysOf(bytes);
    QSet<QString> surplus;
    for (qsizetype i = 0; i + SiteZoom::mostSites < keys.size(); ++i)
        surplus.insert(foldedName(keys.at(i)));
    surplus.remove(chosen.toLower());
    return surplus.isEmpty() ? bytes : without(bytes, surplus);
}
}

namespace SiteZoom {

QString path()
{
    return AppFolder::appData(u"Zoom.ini"_s);
}

QString siteOf(const QUrl &url)
{
    if (url.isLocalFile())
        return u"file:"_s;
    if (url.scheme() != "http"_L1 && url.scheme() != "https"_L1)
        return {};
    const QString host = url.host(QUrl::FullyEncoded);
    return host.size() <= longestHost && IniText::canHold(nameOf(host)) ? host : QString();
}

int percent(const QString &site)
{
    if (site.isEmpty() || !isUsable(path()))
        return usual;
    const QByteArray file = readIniFile(path()).value_or(QByteArray());
    return percentOf(IniText::value(file, nameOf(site), longestValue).value_or(QString()));
}

WriteResult keep(const QString &site, int percent)
{
    if (site.isEmpty() || percent < least || percent > most || !isUsable(path()))
        return WriteResult(WriteResult::Failure::Refused);
    if (percent == usual && !QFileInfo::exists(path()))
        return {};
    return changeIniFile(path(), [&](const QByteArray &old) {
        return percent == usual
            ? without(old, {site.toLower()})
            : trimmed(IniText::put(old, nameOf(site), QString::number(percent)), site);
    });
}

QList<Kept> all()
{
    QList<Kept> result;
    if (!isUsable(path()))
        return result;
    const QByteArray file = readIniFile(path()).value_or(QByteArray());
    const QList<Key> keys = keysOf(file);
    QHash<QString, bool> seen;
    for (const Key &key : keys) {
        const QString site = QString::fromUtf8(key.name);
        const int percent =
            percentOf(IniText::valueText(key.value, TextEncoding::Encoding::Utf8, longestValue));
        if (!std::exchange(seen[site.toLower()], true) && percent != usual)
            result.append({site, percent});
    }
    return result;
}

WriteResult forget(const QStringList &sites)
{
    if (!QFileInfo::exists(path()))
        return {};
    QSet<QString> folded;
    for (const QString &site : sites)
        folded.insert(site.toLower());
    return changeIniFile(path(), [&](const QByteArray &old) { return without(old, folded); });
}

WriteResult forgetAll()
{
    if (!QFileInfo::exists(path()))
        return {};
    return changeIniFile(path(), [](const QByteArray &old) {
        QByteArray bytes = old;
        const QList<IniText::Section> sections = IniText::sections(old);
        // From the end, so that the places before it stay right.
        std::for_each(sections.crbegin(), sections.crend(), [&bytes](const IniText::Section &each) {
            if (isOfSites(each))
                bytes.remove(each.begin, each.keysEnd - each.begin);
        });
        return bytes;
    });
}

}
