#pragma once

#include <QString>

/// The command line without double quotes at its ends. The two ends are looked at independently:
/// a lone quote at either goes too.
QString unquoted(const QString &commandLine);

/// What the program opens at its start: the path of a profile file that `text` names by its
/// address, the address of any other file that it names by its path (relative to `folder`, the
/// current one), else the text as it stands.
QString startAddress(const QString &text, const QString &folder);

/// The same for a start that was made in another folder than this program's.
QString startAddressElsewhere(const QString &text, const QString &folder);

/// True for "--help" and "--version", for which the program prints `commandLineAnswer` and ends.
bool asksForWords(QByteArrayView argument);
/// `program` is how it was called. Needs no display.
QString commandLineAnswer(QByteArrayView argument, const QString &program);
