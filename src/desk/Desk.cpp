#include "Desk.h"

#include <algorithm>

bool Desk::hasPlaces() const
{
    return std::any_of(windows.begin(), windows.end(),
                       [](const DeskWindow &window) { return window.place.isValid(); });
}
