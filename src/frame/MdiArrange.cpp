#include "MdiArrange.h"

#include <algorithm>

namespace {

/// The part `index` of `count` nearly equal parts of a length.
int edge(int length, int index, int count)
{
    return static_cast<int>(static_cast<qint64>(length) * index / count);
}

int squareRoot(int number)
{
    int root = 0;
    while ((root + 1) * (root + 1) <= number)
        ++root;
    return root;
}

}

namespace MdiArrange {

QRect cascadePlace(int index, const QRect &area, int step)
{
    // None on an area too small for a shift.
    const int places = std::min(area.height(), area.width()) / (3 * std::max(step, 1));
    const QSize size(std::max(area.width() - places * step, 1),
                     std::max(area.height() - places * step, 1));
    const int shift = index % (places + 1) * step;
    return QRect(area.topLeft() + QPoint(shift, shift), size) & area;
}

QList<QRect> cascade(int count, const QRect &area, int step)
{
    QList<QRect> result;
    for (int i = 0; i < count; ++i)
        result.append(cascadePlace(i, area, step));
    return result;
}

QList<QRect> tile(int count, const QRect &area, Arrange direction)
{
    QList<QRect> result;
    if (count <= 0)
        return result;
    const int shorter = squareRoot(count);
    const int longer = count / shorter;
    const int columns = direction == Arrange::TileHorizontal ? shorter : longer;
    const int rest = count % columns;
    for (int column = 0; column < columns; ++column) {
        // What does not divide evenly makes the last columns one window taller.
        const int rows = count / columns + (column >= columns - rest ? 1 : 0);
        const int left = edge(area.width(), column, columns);
        const int right = edge(area.width(), column + 1, columns);
        for (int row = 0; row < rows; ++row) {
            const int top = edge(area.height(), row, rows);
            const int bottom = edge(area.height(), row + 1, rows);
            result.append(QRect(area.left() + left, area.top() + top, right - left, bottom - top));
        }
    }
    return result;
}

QList<QRect> icons(int count, const QRect &area, const QSize &icon)
{
    QList<QRect> result;
    const int columns = std::max(area.width() / std::max(icon.width(), 1), 1);
    for (int i = 0; i < count; ++i) {
        const int top = area.bottom() + 1 - (i / columns + 1) * icon.height();
        result.append(QRect(QPoint(area.left() + i % columns * icon.width(), top), icon));
    }
    return result;
}

}
