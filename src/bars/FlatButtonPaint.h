#pragma once

#include <QColor>

class QPainter;
class QPalette;
class QRect;
class QRectF;

/// The look the buttons of the strip share, mixed from palette colours only.
namespace FlatButtonPaint {
/// A colour of the palette's text laid thinly over its window: lines, grippers, hover.
QColor tint(const QPalette &palette, double strength);

/// Rounded background of a flat button: nothing at rest, tinted under the mouse, stronger while
/// down, in the highlight colour while `pressed` is its lasting state; a focus ring.
void background(QPainter &painter, const QRectF &rect, const QPalette &palette, bool hover,
                bool down, bool pressed, bool focus);

/// A small triangle pointing down.
void arrow(QPainter &painter, const QRectF &area, const QColor &colour);
}
