#include "IniText.h"

#include "IniBytes.h"
#include "TextEncoding.h"
#include "TextRules.h"

#include <QHash>

#include <algorithm>

using namespace IniBytes;
using TextEncoding::Encoding;

namespace {
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

// A line with a key: where its name begins, where it has "=", and where it ends and the next
// begins.
struct KeyLine {
    qsizetype begin;
    qsizetype equals;
    qsizetype end;
    qsizetype next;
};

// Goes over the section whose lines begin at `at`, for as long as `key` wants to hear of more.
template <typename Key> void eachKey(QByteArrayView file, qsizetype at, const Key &key)
{
    while (at < file.size()) {
        const qsizetype end = seek(file, '\n', at, file.size());
        const qsizetype begin = skipBlanks(file, at, end);
        at = std::min(end + 1, file.size());
        if (begin == end || file[begin] == ';')
            continue;
        if (file[begin] == '[')
            return;
        const qsizetype equals = seek(file, '=', begin, end);
        if (equals < end && !key(KeyLine{begin, equals, end, at}))
            return;
    }
}

void holdValue(QByteArrayView file, const KeyLine &line, IniText::Place &place)
{
    place.hasSection = place.hasKey = true;
    place.valueEnd = dropBlanks(file, line.equals + 1, line.end);
    place.valueBegin = skipBlanks(file, line.equals + 1, place.valueEnd);
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
    const qsizetype first = findSection(file, name.section);
    if (first < 0)
        return place;
    place.hasSection = true;
    place.newLine = first;
    const NameTest isWanted(file, name.key);
    eachKey(file, first, [&](const KeyLine &line) {
        place.newLine = line.next;
        if (isWanted(line.begin, line.equals))
            holdValue(file, line, place);
        return !place.hasKey;
    });
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
    eachKey(file, first, [&](const KeyLine &line) {
        missing.newLine = line.next;
        const qsizetype end = dropBlanks(file, line.begin, line.equals);
        Place &place = found[lowerAscii(file.sliced(line.begin, end - line.begin))];
        if (!place.hasKey)
            holdValue(file, line, place);
        return true;
    });
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

}
