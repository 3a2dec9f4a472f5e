#pragma once

#include <QImage>

class QString;

/// The splash's picture: the program's icon and name on a ground of its own, so that it stands on
/// light and dark forms alike. 960 x 400 pixels, twice the size it is shown at.
QImage logo(const QString &iconFile);
