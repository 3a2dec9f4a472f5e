// An INI file with other values.
#include "IniBytes.h"
#include "IniText.h"
#include "TextEncoding.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace IniBytes;
using TextEncoding::Encoding;

namespace {
QByteArray lineEnd(QByteArrayView file)
{
    const qsizetype at = seek(file, '\n', 0, file.size());
    return at < file.size() && (at == 0 || file[at - 1] != '\r') ? "\n"_ba : "\r\n"_ba;
}

QByteArray putBytes(const QByteArray &file, const IniText::Place &place, const QByteArray &section,
                    const QByteArray &key, const QByteArray &value)
{
    QByteArray result = file;
    if (place.hasKey)
        return result.replace(place.valueBegin, place.valueEnd - place.valueBegin, value);
    const QByteArray end = lineEnd(file);
    const qsizetype at = place.hasSection ? place.newLine : file.size();
    QByteArray added;
    if (at > afterMark(file) && file[at - 1] != '\n')
        added += end;
    if (!place.hasSection)
        added += '[' + section + ']' + end;
    added += key + '=' + value + end;
    return result.insert(at, added);
}

// Bytes that take the place of [begin, end).
struct Edit {
    qsizetype begin;
    qsizetype end;
    QByteArray bytes;
};

// `edits` ascend and do not overlap.
QByteArray edited(const QByteArray &file, const QList<Edit> &edits)
{
    QByteArray result;
    qsizetype done = 0;
    for (const Edit &edit : edits) {
        result += QByteArrayView(file).sliced(done, edit.begin - done);
        result += edit.bytes;
        done = edit.end;
    }
    return result + file.sliced(done);
}

// The file changed in the encoding given, or nothing where that cannot be.
std::optional<QByteArray> putEncoded(const QByteArray &file, const IniText::Name &name,
                                     const QString &value, Encoding encoding)
{
    const auto section = TextEncoding::encodePart(withoutBlanks(name.section), encoding);
    const auto key = TextEncoding::encodePart(withoutBlanks(name.key), encoding);
    const auto text = TextEncoding::encodePart(value, encoding);
    if (!section || !key || !text)
        return {};
    const QByteArray result = putBytes(file, IniText::find(file, name), *section, *key, *text);
    // Bytes of the old code page that by chance are valid UTF-8 would be read as other text.
    const bool kept = TextEncoding::isAscii(result)
        || (TextEncoding::detect(result) == Encoding::Windows1252)
            == (encoding == Encoding::Windows1252);
    return kept ? std::optional(result) : std::nullopt;
}
}

namespace IniText {

QString oneLine(QString value)
{
    value.replace("\r\n"_L1, " "_L1);
    for (const QChar breaker : {u'\r', u'\n', u'\0'})
        value.replace(breaker, u' ');
    return value;
}

bool canHold(const Name &name)
{
    const auto breaksLine = [](QChar character) {
        return character == u'\n' || character == u'\r' || character == u'\0';
    };
    const QString key = withoutBlanks(name.key);
    return std::none_of(name.section.cbegin(), name.section.cend(), breaksLine)
        && std::none_of(name.key.cbegin(), name.key.cend(), breaksLine)
        && !name.section.contains(u']') && !key.isEmpty() && !key.contains(u'=')
        && !key.startsWith(u'[') && !key.startsWith(u';');
}

QByteArray put(const QByteArray &file, const Name &name, const QString &value)
{
    const QString line = oneLine(value);
    const Encoding encoding = TextEncoding::detect(file);
    if (const auto kept = putEncoded(file, name, line, encoding))
        return *kept;
    // A mark before bytes that are no UTF-8 was skipped all the same, and stays what it is.
    const qsizetype start = afterMark(file);
    const QByteArray converted =
        file.first(start) + TextEncoding::decodePart(file.sliced(start), encoding).toUtf8();
    return *putEncoded(converted, name, line, Encoding::Utf8);
}

std::optional<QByteArray> putKeys(const QByteArray &file, const QString &section,
                                  const QStringList &keys, const QStringList &values)
{
    QSet<QByteArray> names;
    for (const QString &key : keys)
        names.insert(lowerAscii(withoutBlanks(key).toUtf8()));
    const bool ascii = std::all_of(names.cbegin(), names.cend(), TextEncoding::isAscii);
    if (keys.isEmpty() || !ascii || names.size() != keys.size()
        || TextEncoding::detect(file) == Encoding::Windows1252)
        return {};
    // The first one makes the section where it is missing.
    const QByteArray old = put(file, {section, keys.first()}, values.first());
    const QList<Place> places = findKeys(old, section, keys);
    QList<Edit> edits;
    Edit added{-1, -1, {}};
    for (qsizetype i = 1; i < keys.size(); ++i) {
        const Place &place = places.at(i);
        const QByteArray value = oneLine(values.at(i)).toUtf8();
        if (place.hasKey) {
            edits.append({place.valueBegin, place.valueEnd, value});
            continue;
        }
        added.begin = added.end = place.newLine;
        added.bytes += withoutBlanks(keys.at(i)).toUtf8() + '=' + value + lineEnd(old);
    }
    if (added.begin > 0 && old[added.begin - 1] != '\n')
        added.bytes.prepend(lineEnd(old));
    std::sort(edits.begin(), edits.end(),
              [](const Edit &a, const Edit &b) { return a.begin < b.begin; });
    // New lines follow the last key of their section, so no value is changed behind them.
    if (added.begin >= 0)
        edits.append(added);
    return edited(old, edits);
}

}
