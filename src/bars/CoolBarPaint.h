#pragma once

class QPainter;
class QPalette;
class QRect;

/// How the cool bar looks between its children: fine lines, dotted grippers.
namespace CoolBarPaint {
inline constexpr int edgePixels = 1; ///< the line towards the pages
inline constexpr int linePixels = 1; ///< between two rows

void edge(QPainter &painter, const QRect &bar, const QPalette &palette, bool atTop);
void band(QPainter &painter, const QRect &bar, const QRect &band, const QPalette &palette);
}
