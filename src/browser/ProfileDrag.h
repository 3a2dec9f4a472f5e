#pragma once

#include <QString>

class QMimeData;

/// The first file that is dragged; empty when none is.
QString firstDraggedFile(const QMimeData &data);

/// True for a file name that ends in ".orp", in any letter case.
bool isProfileName(const QString &file);
