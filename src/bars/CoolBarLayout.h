#pragma once

#include <QList>

/// The arithmetic of one row of the cool bar, in whole pixels.
namespace CoolBarLayout {
struct Wish {
    double width; ///< wanted; may be negative or huge
    int minimum;
};

/// The widths of a row's bands, from left to right: each gets what it wants but no less than its
/// minimum and no more than leaves the bands after it theirs; the last takes what is left. Where
/// not even the minimums fit, all shrink in proportion. The sum is always `available`.
QList<int> fit(const QList<Wish> &wishes, int available);
}
