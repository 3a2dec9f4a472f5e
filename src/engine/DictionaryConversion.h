#pragma once

#include <functional>

class QObject;
class QString;

/// Makes dictionaries readable for the engine by the converter that comes with it, in a process of
/// its own: what it reads may be anything, and may keep it for ever.
namespace DictionaryConversion {
/// Whether the system has a converter.
bool isPossible();
/// Converts the ".dic" file `dictionary`, with the ".aff" file beside it, into `target`, which is
/// there whole or as it was before. Calls `done` with whether it worked, also where the same file
/// is being made already; never when `context` has gone.
void begin(const QString &dictionary, const QString &target, QObject *context,
           const std::function<void(bool isDone)> &done);
}
