#pragma once

/// What assistive technologies see of the tool bars: their own roles, and buttons whose press runs
/// the click handler and whose checked state is the bar's.
namespace ToolBarAccessible {
/// Registers them, once.
void install();
}
