#pragma once

#include "SiteZoom.h"

#include <array>

/// The scale of sizes that a page can be shown in, in percent.
namespace ZoomScale {
inline constexpr std::array steps{25,  33,  50,  67,  75,  80,  90,  100, 110,
                                  125, 150, 175, 200, 250, 300, 400, 500};
static_assert(steps.front() == SiteZoom::least && steps.back() == SiteZoom::most);
/// The sizes of text that the menu names, from smallest to largest: marks on the scale.
inline constexpr std::array fontSizes{75, 90, 100, 125, 150};

/// `count` steps from `percent`, which may be between two, upwards or, below 0, downwards.
constexpr int walk(int percent, int count)
{
    for (; count > 0; --count) {
        for (const int step : steps) {
            if (step > percent) {
                percent = step;
                break;
            }
        }
    }
    for (; count < 0; ++count) {
        int below = percent;
        for (const int step : steps) {
            if (step < percent)
                below = step;
        }
        percent = below;
    }
    return percent;
}
static_assert(walk(100, 1) == 110 && walk(100, -1) == 90 && walk(117, 1) == 125);
static_assert(walk(500, 3) == 500 && walk(30, -9) == 25);
}
