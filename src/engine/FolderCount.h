#pragma once

#include <QString>
#include <functional>

class QObject;

/// Counts the files in a folder and all below it that the engine gives a page: hidden ones too, and
/// none that a link leads to.
namespace FolderCount {
/// Of files and folders. The engine lists them while the interface stands still, and links as well.
constexpr int most = 50'000;

/// In a thread of its own; `done` is told in the interface's, and nobody once `receiver` has gone.
/// More than `most` is told as one more than that.
void of(const QString &folder, QObject *receiver, const std::function<void(int files)> &done);
}
