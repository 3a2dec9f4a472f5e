#pragma once

#include "TextEncoding.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

/// An INI file as bytes. A line ends with LF; blanks (space, tab, carriage return) around names
/// and values are no part of them. A line beginning with `[` is a section, its name ends at the
/// first `]` or with the line; one beginning with `;` is a comment; any other with `=` is a key.
/// Names are compared without letter case; the first section of a name and the first key in it
/// count.
namespace IniText {
/// Positions in the bytes.
struct Place {
    bool hasSection = false;
    bool hasKey = false;
    /// The value without the blanks around it; only with `hasKey`.
    qsizetype valueBegin = 0;
    qsizetype valueEnd = 0;
    /// Where a new key line of the section begins; only with `hasSection` and without `hasKey`.
    qsizetype newLine = 0;
};

/// Section and key of a value. Names that no line could hold are found nowhere.
struct Name {
    QString section;
    QString key;
};

/// A section with its keys, for files whose sections are the entries of a list. All of it are parts
/// of the file's bytes.
struct Section {
    struct Key {
        QByteArrayView name;
        QByteArrayView value;
    };

    QByteArrayView name;
    /// From its header to the next one or the end of the file. Positions in the bytes.
    qsizetype begin = 0;
    qsizetype end = 0;
    /// Behind the line of its last key, or its header: what follows may belong to the next section.
    qsizetype keysEnd = 0;
    QList<Key> keys;

    /// Of the first key of that ASCII name; a null view where there is none.
    QByteArrayView value(QByteArrayView key) const;
};

/// All sections in their order, of those with one name too, found in one pass.
QList<Section> sections(QByteArrayView file);

/// Told of a file's lines in their order.
class Walker {
public:
    virtual ~Walker() = default;
    virtual void section(QByteArrayView name) = 0;
    /// Of the section told last, or of none.
    virtual void key(QByteArrayView name, QByteArrayView value) = 0;
};

/// The same for files that may be too large for a list of all that is in them.
void walk(QByteArrayView file, Walker &walker);

Place find(QByteArrayView file, const Name &name);

/// The places of keys of one section, in their order, found in one pass: each as `find` has it.
/// Keys that are not ASCII are looked for one by one.
QList<Place> findKeys(QByteArrayView file, const QString &section, const QStringList &keys);

/// The value, up to a NUL in it and to `characters` characters (a surrogate pair is one).
std::optional<QString> value(QByteArrayView file, const Name &name, int characters);
/// The value at a place that `find` gave.
std::optional<QString> valueAt(QByteArrayView file, const Place &place, int characters);

/// The text of a value's bytes in a file of that encoding, cut in the same way.
QString valueText(QByteArrayView value, TextEncoding::Encoding encoding, int characters);

/// The value as a line can hold it: whatever would end the line, or the value as other readers see
/// it, becomes a blank.
QString oneLine(QString value);

/// Whether a file can hold the name so that it is found again: no line breaks or NUL, no "]" in
/// the section, no "=" in the key, no key that is empty or begins as a section or comment does.
bool canHold(const Name &name);

/// The file with that value, all other bytes as they were. What a line cannot hold (line breaks,
/// NUL) becomes a blank. Where the file's encoding lacks a character the whole file becomes UTF-8.
/// `name` is one that a file can hold.
QByteArray put(const QByteArray &file, const Name &name, const QString &value);

/// The file as after a `put` of each value under its key, in order, made in one pass. Nothing
/// where only single steps give that: keys that are not ASCII or come twice, a file that is not
/// UTF-8.
std::optional<QByteArray> putKeys(const QByteArray &file, const QString &section,
                                  const QStringList &keys, const QStringList &values);
}
