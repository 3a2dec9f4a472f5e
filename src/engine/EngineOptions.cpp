#include "EngineOptions.h"

#include "AppFolder.h"
#include "IniStore.h"
#include "Log.h"
#include "TextRules.h"

#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {
constexpr auto section = "Engine"_L1;
/// What the program writes has less than a hundredth of this.
constexpr qint64 largestFile = 1024 * 1024;
constexpr int longestFontName = 200;

struct Switch {
    const char *key;
    bool EngineOptions::*value;
};
constexpr Switch switches[] = {
    {"RefuseThirdPartyCookies", &EngineOptions::refuseThirdPartyCookies},
    {"Scripts", &EngineOptions::scripts},
    {"Images", &EngineOptions::images},
    {"PdfInPage", &EngineOptions::pdfInPage},
    {"HardwareRendering", &EngineOptions::hardwareRendering},
    {"Spelling", &EngineOptions::spelling},
};

struct Number {
    const char *key;
    int EngineOptions::*value;
    int least;
    int most;
};
constexpr Number numbers[] = {
    {"CacheLimit", &EngineOptions::cacheLimit, 0, EngineLimits::cache},
    {"FontSize", &EngineOptions::fontSize, EngineLimits::leastFont, EngineLimits::mostFont},
    {"FixedFontSize", &EngineOptions::fixedFontSize, EngineLimits::leastFont,
     EngineLimits::mostFont},
    {"MinimumFontSize", &EngineOptions::minimumFontSize, 0, EngineLimits::mostFont},
    {"ProxyPort", &EngineOptions::proxyPort, 1, 65535},
};

bool hasControls(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(),
                       [](QChar c) { return c.category() == QChar::Other_Control; });
}

bool isFontName(const QString &text)
{
    return text.size() <= longestFontName && !hasControls(text);
}

struct Text {
    const char *key;
    QString EngineOptions::*value;
    bool (*isUsable)(const QString &);
};
constexpr Text texts[] = {
    {"StandardFont", &EngineOptions::standardFont, isFontName},
    {"SerifFont", &EngineOptions::serifFont, isFontName},
    {"SansSerifFont", &EngineOptions::sansSerifFont, isFontName},
    {"FixedFont", &EngineOptions::fixedFont, isFontName},
    {"ProxyHost", &EngineOptions::proxyHost, EngineOptionText::isHost},
    {"Languages", &EngineOptions::languages, EngineOptionText::isLanguageList},
    {"UserAgent", &EngineOptions::userAgent, EngineOptionText::isUserAgent},
    {"DownloadFolder", &EngineOptions::downloadFolder, EngineOptionText::isFolder},
    {"Dictionaries", &EngineOptions::dictionaries, EngineOptionText::isLanguageList},
};

constexpr char proxyKey[] = "Proxy";
struct ProxyName {
    const char *name;
    EngineOptions::Proxy proxy;
};
constexpr ProxyName proxyNames[] = {
    {"System", EngineOptions::Proxy::System},
    {"None", EngineOptions::Proxy::None},
    {"HTTP", EngineOptions::Proxy::Http},
    {"SOCKS5", EngineOptions::Proxy::Socks5},
};

QStringList allKeys()
{
    QStringList keys;
    for (const Switch &each : switches)
        keys.append(QString::fromLatin1(each.key));
    for (const Number &each : numbers)
        keys.append(QString::fromLatin1(each.key));
    for (const Text &each : texts)
        keys.append(QString::fromLatin1(each.key));
    keys.append(QString::fromLatin1(proxyKey));
    return keys;
}

/// The stored texts by key; without those that are missing or empty.
QHash<QString, QString> storedTexts(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return {};
    if (!file.isFile() || !file.isReadable() || file.size() > largestFile) {
        qCWarning(lcEngine) << path << "cannot be read or is too large: the engine is as it comes";
        return {};
    }
    const QStringList keys = allKeys();
    const QStringList values = readIniValues(section, keys, path);
    QHash<QString, QString> result;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (!values.at(i).isEmpty())
            result.insert(keys.at(i), values.at(i));
    }
    return result;
}

void warn(const char *key, const QString &text)
{
    qCWarning(lcEngine) << "Engine.ini:" << key << "cannot be" << text.left(80);
}

void take(const Switch &option, const QString &text, EngineOptions &options)
{
    if (const std::optional<bool> value = textToBoolean(text))
        options.*option.value = *value;
    else
        warn(option.key, text);
}

void take(const Number &option, const QString &text, EngineOptions &options)
{
    const std::optional<double> value = textToNumber(text);
    if (value && *value >= option.least && *value <= option.most && std::floor(*value) == *value)
        options.*option.value = int(*value);
    else
        warn(option.key, text);
}

void take(const Text &option, const QString &text, EngineOptions &options)
{
    if (option.isUsable(text))
        options.*option.value = text;
    else
        warn(option.key, text);
}

void takeProxy(const QString &text, EngineOptions &options)
{
    const auto *known =
        std::find_if(std::begin(proxyNames), std::end(proxyNames), [&text](const ProxyName &each) {
            return text.compare(QLatin1String(each.name), Qt::CaseInsensitive) == 0;
        });
    if (known == std::end(proxyNames)) {
        warn(proxyKey, text);
        return;
    }
    options.proxy = known->proxy;
    if (options.usesOwnProxy() && options.proxyHost.isEmpty()) {
        qCWarning(lcEngine) << "Engine.ini: a proxy without an address is not used";
        options.proxy = EngineOptions::Proxy::System;
    }
}

QString nameOf(EngineOptions::Proxy proxy)
{
    for (const ProxyName &each : proxyNames) {
        if (each.proxy == proxy)
            return QString::fromLatin1(each.name);
    }
    return {};
}
}

QString EngineOptions::path()
{
    return AppFolder::appData(u"Engine.ini"_s);
}

EngineOptions EngineOptions::read()
{
    EngineOptions options;
    const QHash<QString, QString> stored = storedTexts(path());
    if (stored.isEmpty())
        return options;
    const auto takeAll = [&stored, &options](const auto &table) {
        for (const auto &option : table) {
            const auto text = stored.constFind(QString::fromLatin1(option.key));
            if (text != stored.cend())
                take(option, *text, options);
        }
    };
    takeAll(switches);
    takeAll(numbers);
    takeAll(texts);
    // After its address.
    const auto proxyText = stored.constFind(QString::fromLatin1(proxyKey));
    if (proxyText != stored.cend())
        takeProxy(*proxyText, options);
    return options;
}

WriteResult EngineOptions::write() const
{
    QList<IniEntry> entries;
    const auto add = [&entries](const char *key, const QString &value) {
        entries.append({section, QString::fromLatin1(key), value});
    };
    for (const Switch &option : switches)
        add(option.key, booleanText(this->*option.value));
    for (const Number &option : numbers)
        add(option.key, QString::number(this->*option.value));
    for (const Text &option : texts)
        add(option.key, this->*option.value);
    add(proxyKey, nameOf(proxy));
    return writeIniEntries(entries, path());
}

namespace EngineOptionText {

bool isHost(const QString &text)
{
    QUrl url;
    url.setHost(text);
    return !url.host().isEmpty() && !text.contains(u' ');
}

bool isLanguageList(const QString &text)
{
    static const QRegularExpression list(
        uR"(^ *[A-Za-z]{1,8}(-[A-Za-z0-9]{1,8})* *(, *[A-Za-z]{1,8}(-[A-Za-z0-9]{1,8})* *)*$)"_s);
    return list.match(text).hasMatch();
}

bool isUserAgent(const QString &text)
{
    return !text.isEmpty()
        && std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= u' ' && c <= u'~'; });
}

bool isFolder(const QString &text)
{
    return QFileInfo(text).isAbsolute() && !hasControls(text);
}

}
