#pragma once

#include <QIcon>
#include <QString>

/// A picture of the program's own set, by name ("back", "folder-open"), drawn in the colours of
/// the application's palette at any size and device pixel ratio; it follows palette changes.
/// The null icon for an unknown name.
QIcon themedIcon(const QString &name);
