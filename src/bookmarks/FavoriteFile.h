#pragma once

#include <QString>
#include <optional>

/// Making files and folders in the Favorites folder. Nothing that is there already is ever
/// replaced: a name that is taken gets a number, "News (2)".
namespace FavoriteFile {
/// `text` as a file name that every file system takes: characters none takes become "_", blanks
/// and dots at the ends go, long names are cut. Where nothing is left it is `otherwise`.
QString name(const QString &text, const QString &otherwise);

/// Writes a new shortcut to `url` into `folder`, which is made when it is missing, under the name
/// `name`; returns its path. A `title` that the name is not is kept in the file. Nothing when it
/// cannot be written: then nothing is left of it.
std::optional<QString> create(const QString &folder, const QString &name, const QString &url,
                              const QString &title = {});

/// Makes a new folder in `folder`; returns its path, or nothing when it cannot be made.
std::optional<QString> createFolder(const QString &folder, const QString &name);
}
