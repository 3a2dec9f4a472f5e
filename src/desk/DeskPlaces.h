#pragma once

#include <QRect>
#include <QSize>

/// Where windows are put, whatever a file says.
namespace DeskPlaces {
/// `place` itself where a window there can be seen and taken hold of in an area of `area` pixels;
/// else the one nearest to it: no smaller than a piece of its title bar of `titleBar` pixels, no
/// larger than the area if it was far larger, and that piece inside.
QRect inside(const QRect &place, const QSize &area, int titleBar);

/// The place of the frame, or where that is not wholly on the screen the nearest one that is, cut
/// to what the screen has.
QRect onScreen(const QRect &place, const QRect &screen);
}
