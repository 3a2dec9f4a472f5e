#pragma once

#include <QString>
#include <functional>
#include <optional>

class QObject;
class QUrl;

/// The program that the desktop has for addresses of a kind that no page is at, such as "mailto:".
struct SchemeProgram {
    /// The desktop's own name for it.
    QString id;
    /// As its menus name it. Not to be trusted: one line, but of any letters.
    QString name;
};

/// Finds and starts such programs. Both are done in a thread of their own, as the desktop's
/// registers may be on a slow disk; `receiver` is told in the interface's, and nobody once it has
/// gone.
namespace SchemePrograms {
/// `found` gets nothing where the desktop has no program, or none but this one.
void find(const QString &scheme, QObject *receiver,
          const std::function<void(const std::optional<SchemeProgram> &program)> &found);
/// Hands `address` to the program as one argument, without a shell. `failed` is called where it
/// could not be started.
void start(const SchemeProgram &program, const QUrl &address, QObject *receiver,
           const std::function<void()> &failed);
}
