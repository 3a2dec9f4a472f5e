#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QObject;

/// The dictionaries of the desktop, by which the spelling of what is typed into pages is checked.
/// The engine reads all of them from one folder and in a format of its own: there they are linked
/// to where the system has them in that format, else converted at their first use, beside the
/// program. Nothing is ever fetched. A dictionary goes by its language tag ("de-DE").
namespace Dictionaries {
/// Those that the system has, sorted; without such that only a converter could make readable where
/// there is none, and such that it refused in this run.
QStringList all();
/// Those of the languages that the desktop names, among `all`.
QStringList ofDesktop(const QStringList &all);
/// The tag in words of its own language, as "Deutsch (Deutschland)".
QString nameOf(const QString &tag);

/// Tells the engine where they are; before it starts.
void announce();
/// Calls `done` with those of `tags` that the engine can read, at once where it can, else after
/// the others were converted; never when `context` has gone. What could not be made is logged.
void prepare(const QStringList &tags, QObject *context,
             const std::function<void(const QStringList &ready)> &done);
}
