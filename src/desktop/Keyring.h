#pragma once

#include <QString>
#include <functional>

class QObject;

/// The desktop's keyring, for what its user wants kept where no other user reads it. Nothing here
/// waits for it: one that is locked asks its own user, for as long as that takes. Nobody is told
/// once `receiver` has gone.
namespace Keyring {
/// Whether the session has a keyring that runs; none is started. `told` is called soon in any
/// case, and at once where there is no session.
void look(QObject *receiver, const std::function<void(bool isThere)> &told);
/// `done` is called where something is kept under `key`.
void read(const QString &key, QObject *receiver,
          const std::function<void(const QString &text)> &done);
/// `failed` is called where it cannot be kept.
void write(const QString &key, const QString &text, QObject *receiver,
           const std::function<void()> &failed);
void remove(const QString &key);
}
