#pragma once

#include <QString>

/// The names of files and folders that are not yet in their place. They are hidden, all of one
/// length whatever the name wanted, and of a shape that nobody gives to a file of his own.
namespace StageName {
/// A path in `folder` that most likely is free.
QString make(const QString &folder);
/// Whether a file or folder of this name, without its path, is such a one.
bool matches(const QString &name);
}
