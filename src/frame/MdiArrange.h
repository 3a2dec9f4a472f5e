#pragma once

#include <QList>
#include <QRect>
#include <QSize>

/// Arrange codes of a multiple-document frame.
enum class Arrange { Cascade = 0, TileHorizontal = 1, TileVertical = 2 };

/// Pure geometry of the classic arrangements, in pixels. Every rectangle lies inside `area`.
namespace MdiArrange {
/// Back to front; each window is one `step` (the height of a title bar) further right and down,
/// beginning again at the corner when a third of the area is used up. All have one size.
QList<QRect> cascade(int count, const QRect &area, int step);
/// The place in such a row after `index` others.
QRect cascadePlace(int index, const QRect &area, int step);
/// Cells that fill `area` without overlap, in reading order of the columns. Horizontal prefers
/// wide windows above each other, vertical tall ones side by side.
QList<QRect> tile(int count, const QRect &area, Arrange direction);
/// Rows of minimized windows from the lower left corner upwards.
QList<QRect> icons(int count, const QRect &area, const QSize &icon);
}
