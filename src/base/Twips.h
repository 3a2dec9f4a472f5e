#pragma once

/// Files and pages may speak of twips, 15 to a (logical) pixel; this is the one place of
/// conversion.
namespace Twips {
inline constexpr int perPixel = 15;

/// Whole pixels of a length in twips, rounded to nearest.
constexpr int toPixels(int twips)
{
    return twips >= 0 ? (twips + perPixel / 2) / perPixel : -((-twips + perPixel / 2) / perPixel);
}

constexpr int fromPixels(int pixels)
{
    return pixels * perPixel;
}
}
