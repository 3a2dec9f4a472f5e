#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// What reading an INI file and changing one have in common: its bytes, and the names in them.
/// Positions and ends are those of `file`.
namespace IniBytes {
/// The first position from `begin` on that holds no blank, or `end`.
qsizetype skipBlanks(QByteArrayView file, qsizetype begin, qsizetype end);
/// Where the blanks before `end` begin.
qsizetype dropBlanks(QByteArrayView file, qsizetype begin, qsizetype end);
/// The position of `byte`, or `end`.
qsizetype seek(QByteArrayView file, char byte, qsizetype begin, qsizetype end);
/// Behind the mark of UTF-8, where there is one.
qsizetype afterMark(QByteArrayView file);

QString withoutBlanks(const QString &name);
char lowerAscii(char byte);
QByteArray lowerAscii(QByteArrayView name);
}
