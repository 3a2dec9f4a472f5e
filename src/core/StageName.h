#pragma once

#include <QString>

/// The names of files and folders that are not yet in their place. They are hidden, all of one
/// length whatever the name wanted, and of a shape that nobody gives to a file of his own.
namespace StageName {
/// What a download is in has a shape of its own: it may stay for a later start to go on with.
enum class Kind { Passing, Download };

/// A path in `folder` that most likely is free.
QString make(const QString &folder, Kind kind = Kind::Passing);
/// Whether a file or folder of this name, without its path, is such a one.
bool matches(const QString &name, Kind kind = Kind::Passing);
}
