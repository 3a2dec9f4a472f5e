#pragma once

#include <QByteArray>

#include <system_error>

/// Gives a file, by its path as the system has it, a name in its folder or another of the same disk
/// that nothing has yet, not even a link that leads nowhere: `file_exists` where something has.
/// What is there under the name is whole, whenever this may end; only where a disk knows neither
/// links nor a renaming that replaces nothing, an empty file stands there for a moment.
namespace NewName {
std::error_code give(const QByteArray &from, const QByteArray &to);
}
