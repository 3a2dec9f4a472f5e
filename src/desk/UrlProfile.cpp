#include "UrlProfile.h"

#include "FileUpdate.h"
#include "IniStore.h"
#include "IniText.h"
#include "NumberedName.h"
#include "TextEncoding.h"
#include "TextRules.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const QString urlSection = u"Profile_URLS"_s;
const QString countSection = u"URL_Count"_s;
const QString countKey = u"Count"_s;
constexpr auto lineEnd = "\r\n"_L1;

QString urlKey(qint32 number)
{
    return "URL"_L1 + QString::number(number);
}

/// The number n of a line that holds a key URLn, whatever its section; 0 for other lines.
qint32 urlNumber(QByteArrayView line)
{
    const QByteArrayView key = line.first(std::max<qsizetype>(line.indexOf('='), 0)).trimmed();
    return numberBehind("URL", key);
}

/// The numbers of all keys that can be in the file, in order: no others need to be looked for.
std::vector<qint32> urlNumbers(QByteArrayView file, qint32 count)
{
    std::vector<qint32> numbers;
    while (!file.isEmpty()) {
        const qsizetype end = file.indexOf('\n');
        const qint32 number = urlNumber(end < 0 ? file : file.first(end));
        if (number >= 1 && number <= count)
            numbers.push_back(number);
        file = end < 0 ? QByteArrayView() : file.sliced(end + 1);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

}

namespace UrlProfile {

QString text(const QStringList &addresses)
{
    QString result = u'[' + urlSection + u']' + lineEnd;
    qint32 number = 0;
    for (const QString &address : addresses)
        result += urlKey(++number) + u'=' + IniText::oneLine(address) + lineEnd;
    return result + u'[' + countSection + u']' + lineEnd + countKey + u'=' + QString::number(number)
        + lineEnd;
}

WriteResult save(const QString &path, const QStringList &addresses)
{
    return FileUpdate::replace(path,
                               TextEncoding::encode(text(addresses), TextEncoding::Encoding::Utf8));
}

qint32 count(const QString &path)
{
    return countIn(readIni(countSection, countKey, u"0"_s, path));
}

qint32 countIn(const QString &text)
{
    const std::optional<double> stored = textToNumber(text);
    // A fraction is rounded as numbers are when they become whole ones: a half to the even side.
    const double whole = std::nearbyint(stored.value_or(0));
    using Limits = std::numeric_limits<qint32>;
    return whole < Limits::min() || whole > Limits::max() ? 0 : static_cast<qint32>(whole);
}

QStringList addresses(const QString &path, qint32 count)
{
    const std::optional<QByteArray> file = readIniFile(path);
    if (!file)
        return {};
    QStringList keys;
    for (const qint32 number : urlNumbers(*file, count))
        keys.append(urlKey(number));
    QStringList values = readIniValues(urlSection, keys, path);
    values.removeAll(QString());
    return values;
}

}
