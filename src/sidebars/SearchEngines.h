#pragma once

#include <QString>
#include <QStringList>

/// The search engine file: the engines' names, their address templates and what was last chosen.
namespace SearchEngines {
/// The names of the engines 1 to Count of the file, without empty ones. Entries are looked for
/// rather than counted up to, so a Count of any size costs no more than the file is long.
QStringList names(const QString &file);

/// The index to select in a list of `count` names; -1 for none.
int preselected(const QString &file, int count);

/// The template of an engine; empty when the file has none.
QString addressTemplate(const QString &file, const QString &name);

/// Keeps the index of the engine a search was made with.
void keepSelection(const QString &file, int index);

/// The address of a search: every "<SearchString>", in any letter case, is replaced by the query
/// with its "&" and "=" escaped and all else as it stands.
QString searchAddress(const QString &addressTemplate, const QString &query);
}
