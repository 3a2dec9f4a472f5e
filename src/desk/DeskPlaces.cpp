#include "DeskPlaces.h"

#include <algorithm>

namespace {
/// A window may be larger than its frame, which was made smaller; but not by more than this.
constexpr int mostAreas = 2;
/// Of the title bar, in its heights: enough for the pointer.
constexpr int holdWidth = 4;
/// A scroll bar may come over the last one.
constexpr int holdHeight = 2;

int length(int wanted, int area, int least)
{
    const int bounded = wanted > mostAreas * area ? area : wanted;
    return std::max(bounded, least);
}

/// Not `clamp`, for which an area without room would be a mistake.
int position(int wanted, int least, int most)
{
    return std::max(least, std::min(wanted, most));
}
}

namespace DeskPlaces {

QRect inside(const QRect &place, const QSize &area, int titleBar)
{
    const int hold = holdWidth * titleBar;
    const QSize size(length(place.width(), area.width(), hold),
                     length(place.height(), area.height(), titleBar));
    return {QPoint(position(place.x(), hold - size.width(), area.width() - hold),
                   position(place.y(), -titleBar / 2, area.height() - holdHeight * titleBar)),
            size};
}

QRect onScreen(const QRect &place, const QRect &screen)
{
    const QSize size = place.size().boundedTo(screen.size());
    return {QPoint(position(place.x(), screen.x(), screen.x() + screen.width() - size.width()),
                   position(place.y(), screen.y(), screen.y() + screen.height() - size.height())),
            size};
}

}
