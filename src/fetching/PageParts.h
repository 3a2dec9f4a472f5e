#pragma once

#include <QString>
#include <QStringList>

/// The folders in which saved pages keep their pictures and such: "NAME_files" beside the page.
/// One that this program made holds a hidden list of what was put into it and for which page, so
/// that what belongs to somebody else is known from it.
namespace PageParts {
/// As the engine names the folder for a page that it writes to `file`.
QString folderOf(const QString &file);

/// The folders beside `page` that a save made for it, as the page stands now.
QStringList of(const QString &page);

/// Puts the list into the folder `parts` of the page that was written to `page` and will be called
/// `name`. False when it cannot.
bool list(const QString &parts, const QString &page, const QString &name);

/// Removes from `parts` what a save put there and nobody has changed since; then the folder, unless
/// there is something else in it.
void remove(const QString &parts);
}
