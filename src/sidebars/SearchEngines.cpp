#include "SearchEngines.h"
#include "IniStore.h"
#include "TextEncoding.h"
#include "TextRules.h"

#include <cmath>
#include <map>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype longestValue = 999;

QStringView withoutBlanks(QStringView text)
{
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t' || c == u'\r'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

bool isSection(QStringView line, QLatin1StringView name)
{
    const QStringView inside = line.sliced(1);
    const qsizetype end = inside.indexOf(u']');
    const QStringView found = withoutBlanks(end < 0 ? inside : inside.first(end));
    return found.compare(name, Qt::CaseInsensitive) == 0;
}

// The number in a key "URL5", or 0: written without padding, it is the same text again.
qint64 numberOfKey(QStringView key)
{
    if (!key.startsWith("URL"_L1, Qt::CaseInsensitive))
        return 0;
    const qint64 number = key.sliced(3).toLongLong();
    return number > 0 && QString::number(number) == key.sliced(3) ? number : 0;
}

void addEngine(QStringView line, std::map<qint64, QString> &engines)
{
    const qsizetype equals = line.indexOf(u'=');
    if (equals < 0)
        return;
    const qint64 number = numberOfKey(withoutBlanks(line.first(equals)));
    if (number > 0) {
        const QString value = withoutBlanks(line.sliced(equals + 1)).toString();
        engines.try_emplace(number, firstCharacters(value, longestValue));
    }
}

// The values of the numbered keys of the first section of engines. A store that is asked for
// one key at a time would go through the whole file for each.
std::map<qint64, QString> numberedEngines(const QString &text)
{
    std::map<qint64, QString> engines;
    bool inside = false;
    for (const QStringView each : QStringView(text).split(u'\n')) {
        const QStringView line = withoutBlanks(each);
        if (line.startsWith(u'[')) {
            if (inside)
                break;
            inside = isSection(line, "Engines"_L1);
        } else if (inside && !line.startsWith(u';')) {
            addEngine(line, engines);
        }
    }
    return engines;
}
}

namespace SearchEngines {

QStringList names(const QString &file)
{
    const auto count = textToNumber(readIni(u"Engines"_s, u"Count"_s, u"0"_s, file));
    const auto bytes = readIniFile(file);
    if (!count || !bytes)
        return {};
    QStringList result;
    for (const auto &[number, name] : numberedEngines(TextEncoding::decode(*bytes))) {
        if (double(number) > *count)
            break;
        if (!name.isEmpty())
            result.append(name);
    }
    return result;
}

int preselected(const QString &file, int count)
{
    const auto index = textToNumber(readIni(u"Data"_s, u"SearchSelection"_s, u"0"_s, file));
    if (!index || *index < 0 || std::nearbyint(*index) >= count)
        return -1;
    return static_cast<int>(std::nearbyint(*index));
}

QString addressTemplate(const QString &file, const QString &name)
{
    return readIni(u"Engine URLs"_s, name, {}, file);
}

void keepSelection(const QString &file, int index)
{
    writeIni(u"Data"_s, u"DefaultSelection"_s, QString::number(index), file).leaveToLog();
}

QString searchAddress(const QString &addressTemplate, const QString &query)
{
    QString escaped = query;
    escaped.replace(u'&', "%26"_L1).replace(u'=', "%3D"_L1);
    QString address = addressTemplate;
    return address.replace("<SearchString>"_L1, escaped, Qt::CaseInsensitive);
}

}
