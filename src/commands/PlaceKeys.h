#pragma once

#include <span>

class Text;

/// Keys that act while the keyboard is in one place of the program, which has them itself.
struct PlaceKeys {
    const Text *place;
    /// In the toolkit's portable form, a blank between two.
    const char *keys;
    const Text *what;
    /// They act wherever the keyboard is in the frame.
    bool isEverywhere = false;
};

/// All that are in neither the menu table nor the key table, place by place.
std::span<const PlaceKeys> placeKeys();
