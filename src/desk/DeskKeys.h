#pragma once

#include <QByteArrayView>
#include <array>

/// The names in a profile with windows, for those who read and who write it.
namespace DeskKeys {
inline constexpr QByteArrayView windowSection = "Window";
inline constexpr QByteArrayView frameSection = "Frame";

/// In the order in which they are written. A window has all but the last two, the frame the first
/// four and the last two.
enum Key {
    Left,
    Top,
    Width,
    Height,
    State,
    Order,
    ScrollX,
    ScrollY,
    Zoom,
    Title,
    Muted,
    Maximized,
    Active,
};
inline constexpr std::array<QByteArrayView, Active + 1> names{
    "Left",    "Top",  "Width", "Height", "State",     "Order", "ScrollX",
    "ScrollY", "Zoom", "Title", "Muted",  "Maximized", "Active"};
}
