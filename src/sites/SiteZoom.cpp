#include "SiteZoom.h"

#include "AppFolder.h"
#include "IniStore.h"
#include "IniText.h"
#include "Log.h"

#include <QFileInfo>
#include <QHash>
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

QByteArray without(const QByteArray &bytes, const QString &site)
{
    QByteArray result = bytes;
    for (;;) {
        const IniText::Place place = IniText::find(result, nameOf(site));
        if (!place.hasKey)
            return result;
        const qsizetype begin = result.lastIndexOf('\n', place.valueBegin - 1) + 1;
        const qsizetype end = result.indexOf('\n', place.valueEnd);
        result.remove(begin, end < 0 ? result.size() - begin : end + 1 - begin);
    }
}

/// The first ones go where there are too many.
QByteArray trimmed(QByteArray bytes)
{
    const QList<IniText::Section> sections = IniText::sections(bytes);
    const auto sites = std::find_if(sections.begin(), sections.end(), isOfSites);
    if (sites == sections.end())
        return bytes;
    QStringList surplus;
    for (qsizetype i = 0; i + SiteZoom::mostSites < sites->keys.size(); ++i)
        surplus.append(QString::fromUtf8(sites->keys.at(i).name));
    for (const QString &site : std::as_const(surplus))
        bytes = without(bytes, site);
    return bytes;
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
            ? without(old, site)
            : trimmed(IniText::put(old, nameOf(site), QString::number(percent)));
    });
}

QList<Kept> all()
{
    QList<Kept> result;
    if (!isUsable(path()))
        return result;
    const QByteArray file = readIniFile(path()).value_or(QByteArray());
    const QList<IniText::Section> sections = IniText::sections(file);
    const auto sites = std::find_if(sections.begin(), sections.end(), isOfSites);
    if (sites == sections.end())
        return result;
    QHash<QString, bool> seen;
    for (const IniText::Section::Key &key : sites->keys) {
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
    return changeIniFile(path(), [&sites](const QByteArray &old) {
        QByteArray bytes = old;
        for (const QString &site : sites)
            bytes = without(bytes, site);
        return bytes;
    });
}

WriteResult forgetAll()
{
    if (!QFileInfo::exists(path()))
        return {};
    return changeIniFile(path(), [](const QByteArray &old) {
        QByteArray bytes = old;
        const QList<IniText::Section> sections = IniText::sections(old);
        for (auto each = sections.crbegin(); each != sections.crend(); ++each) {
            if (isOfSites(*each))
                bytes.remove(each->begin, each->keysEnd - each->begin);
        }
        return bytes;
    });
}

}
