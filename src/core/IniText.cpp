#include "IniText.h"
#include "TextEncoding.h"

#include "TextRules.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;
using TextEncoding::Encoding;

namespace {
bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r';
}

qsizetype skipBlanks(QByteArrayView file, qsizetype begin, qsizetype end)
{
    while (begin < end && isBlank(file[begin]))
        ++begin;
    return begin;
}

qsizetype dropBlanks(QByteArrayView file, qsizetype begin, qsizetype end)
{
    while (end > begin && isBlank(file[end - 1]))
        --end;
    return end;
}

// The position of `byte`, or `end`.
qsizetype seek(QByteArrayView file, char byte, qsizetype begin, qsizetype end)
{
    if (begin >= end)
        return end;
    const void *found =
        std::memchr(file.data() + begin, byte, static_cast<std::size_t>(end - begin));
    return found ? static_cast<const char *>(found) - file.data() : end;
}

qsizetype afterMark(QByteArrayView file)
{
    return file.startsWith(TextEncoding::mark()) ? TextEncoding::mark().size() : 0;
}

QString withoutBlanks(const QString &name)
{
    const auto blank = [](QChar character) {
        return character == u' ' || character == u'\t' || character == u'\r';
    };
    const auto begin = std::find_if_not(name.cbegin(), name.cend(), blank);
    const auto end = std::find_if_not(name.crbegin(), std::make_reverse_iterator(begin), blank);
    return QString(begin, end.base() - begin);
}

char lowerAscii(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

QByteArray lowerAscii(QByteArrayView name)
{
    QByteArray lower(name.size(), Qt::Uninitialized);
    std::transform(name.begin(), name.end(), lower.begin(),
                   [](char byte) { return lowerAscii(byte); });
    return lower;
}

// Compares the names in a file with a wanted one; text is decoded only where it must be.
class NameTest {
public:
    NameTest(QByteArrayView file, const QString &wanted)
        : m_file(file)
        , m_wanted(withoutBlanks(wanted))
        , m_bytes(m_wanted.toUtf8())
        , m_ascii(TextEncoding::isAscii(m_bytes))
    {
    }

    bool operator()(qsizetype begin, qsizetype end) const
    {
        begin = skipBlanks(m_file, begin, end);
        end = dropBlanks(m_file, begin, end);
        const QByteArrayView name = m_file.sliced(begin, end - begin);
        if (m_ascii) {
            return name.size() == m_bytes.size()
                && std::equal(name.begin(), name.end(), m_bytes.cbegin(),
                              [](char a, char b) { return lowerAscii(a) == lowerAscii(b); });
        }
        // No encoding here needs fewer bytes than one or more than three for a UTF-16 unit.
        if (name.size() < m_wanted.size() || name.size() > 3 * m_wanted.size())
            return false;
        if (!m_encoding)
            m_encoding = TextEncoding::detect(m_file);
        return TextEncoding::decodePart(name, *m_encoding).compare(m_wanted, Qt::CaseInsensitive)
            == 0;
    }

private:
    QByteArrayView m_file;
    QString m_wanted;
    QByteArray m_bytes;
    bool m_ascii;
    mutable std::optional<Encoding> m_encoding;
};

// Where the line after the header of the first section of that name begins, or -1. Sections are
// few and lines many: what is looked for is the bracket, not the line.
qsizetype findSection(QByteArrayView file, const QString &section)
{
    const NameTest isWanted(file, section);
    const qsizetype start = afterMark(file);
    qsizetype at = seek(file, '[', start, file.size());
    while (at < file.size()) {
        const qsizetype before = dropBlanks(file, start, at);
        const qsizetype end = seek(file, '\n', at, file.size());
        if (before == start || file[before - 1] == '\n') {
            if (isWanted(at + 1, seek(file, ']', at + 1, end)))
                return std::min(end + 1, file.size());
        }
        // The rest of this line can hold no header.
        at = seek(file, '[', end, file.size());
    }
    return -1;
}

// Goes over the file once: tells `header` and `key` what they are to hear of each line that is one,
// and where the line begins and the next one does.
template <typename Header, typename Key>
void eachLine(QByteArrayView file, const Header &header, const Key &key)
{
    const auto part = [file](qsizetype begin, qsizetype end) {
        const qsizetype first = skipBlanks(file, begin, end);
        return file.sliced(first, dropBlanks(file, first, end) - first);
    };
    for (qsizetype at = afterMark(file); at < file.size();) {
        const qsizetype end = seek(file, '\n', at, file.size());
        const qsizetype next = std::min(end + 1, file.size());
        const qsizetype begin = skipBlanks(file, at, end);
        if (begin < end && file[begin] == '[') {
            header(part(begin + 1, seek(file, ']', begin + 1, end)), at, next);
        } else if (begin < end && file[begin] != ';') {
            const qsizetype equals = seek(file, '=', begin, end);
            if (equals < end)
                key(part(begin, equals), part(equals + 1, end), next);
        }
        at = next;
    }
}

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

QByteArrayView Section::value(QByteArrayView key) const
{
    for (const Key &each : keys) {
        if (each.name.compare(key, Qt::CaseInsensitive) == 0)
            return each.value;
    }
    return {};
}

QList<Section> sections(QByteArrayView file)
{
    QList<Section> result;
    eachLine(
        file,
        [&](QByteArrayView name, qsizetype at, qsizetype next) {
            if (!result.isEmpty())
                result.last().end = at;
            result.append({name, at, file.size(), next, {}});
        },
        [&](QByteArrayView name, QByteArrayView value, qsizetype next) {
            if (result.isEmpty())
                return;
            result.last().keys.append({name, value});
            result.last().keysEnd = next;
        });
    return result;
}

void walk(QByteArrayView file, Walker &walker)
{
    eachLine(
        file, [&](QByteArrayView name, qsizetype, qsizetype) { walker.section(name); },
        [&](QByteArrayView name, QByteArrayView value, qsizetype) { walker.key(name, value); });
}

Place find(QByteArrayView file, const Name &name)
{
    Place place;
    qsizetype at = findSection(file, name.section);
    if (at < 0)
        return place;
    place.hasSection = true;
    place.newLine = at;
    const NameTest isWanted(file, name.key);
    while (at < file.size()) {
        const qsizetype end = seek(file, '\n', at, file.size());
        const qsizetype begin = skipBlanks(file, at, end);
        at = std::min(end + 1, file.size());
        if (begin == end || file[begin] == ';')
            continue;
        if (file[begin] == '[')
            break;
        const qsizetype equals = seek(file, '=', begin, end);
        if (equals == end)
            continue;
        place.newLine = at;
        if (isWanted(begin, equals)) {
            place.hasKey = true;
            place.valueEnd = dropBlanks(file, equals + 1, end);
            place.valueBegin = skipBlanks(file, equals + 1, place.valueEnd);
            break;
        }
    }
    return place;
}

QList<Place> findKeys(QByteArrayView file, const QString &section, const QStringList &keys)
{
    QList<Place> places(keys.size());
    const qsizetype first = findSection(file, section);
    if (first < 0)
        return places;
    QHash<QByteArray, Place> found;
    Place missing;
    missing.hasSection = true;
    missing.newLine = first;
    for (qsizetype at = first; at < file.size();) {
        const qsizetype end = seek(file, '\n', at, file.size());
        const qsizetype begin = skipBlanks(file, at, end);
        at = std::min(end + 1, file.size());
        if (begin == end || file[begin] == ';')
            continue;
        if (file[begin] == '[')
            break;
        const qsizetype equals = seek(file, '=', begin, end);
        if (equals == end)
            continue;
        missing.newLine = at;
        const QByteArrayView name = file.sliced(begin, dropBlanks(file, begin, equals) - begin);
        Place &place = found[lowerAscii(name)];
        if (place.hasKey)
            continue;
        place.hasSection = place.hasKey = true;
        place.valueEnd = dropBlanks(file, equals + 1, end);
        place.valueBegin = skipBlanks(file, equals + 1, place.valueEnd);
    }
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const QByteArray name = withoutBlanks(keys.at(i)).toUtf8();
        places[i] = TextEncoding::isAscii(name) ? found.value(lowerAscii(name), missing)
                                                : find(file, {section, keys.at(i)});
    }
    return places;
}

std::optional<QString> value(QByteArrayView file, const Name &name, int characters)
{
    return valueAt(file, find(file, name), characters);
}

std::optional<QString> valueAt(QByteArrayView file, const Place &place, int characters)
{
    if (!place.hasKey)
        return {};
    const QByteArrayView bytes = file.sliced(place.valueBegin, place.valueEnd - place.valueBegin);
    const Encoding encoding =
        TextEncoding::isAscii(bytes) ? Encoding::Utf8 : TextEncoding::detect(file);
    return valueText(bytes, encoding, characters);
}

QString valueText(QByteArrayView value, Encoding encoding, int characters)
{
    // No character has more than four bytes: the rest of a long value need not be looked at.
    value = value.first(std::min<qsizetype>(value.size(), 4 * qsizetype(characters)));
    value = value.first(seek(value, '\0', 0, value.size()));
    return firstCharacters(TextEncoding::decodePart(value, encoding), characters);
}

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
