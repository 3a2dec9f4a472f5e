#pragma once

#include <QString>
#include <functional>

class QObject;

/// The engine's disk cache as files. The engine's own way to clear it resets the network of all
/// pages: loads under way never end and cookies of the session are lost. It takes a file that is
/// gone for one that was never there.
/// Both work on another thread; `done` is called on the interface thread with the bytes that the
/// files have then, and not at all when `receiver` has gone.
namespace CacheFolder {
using Done = std::function<void(qint64 bytes)>;

void measure(const QString &folder, QObject *receiver, const Done &done);
/// Removes all that the cache holds, except its index, which the engine mends by itself.
void clear(const QString &folder, QObject *receiver, const Done &done);
}
