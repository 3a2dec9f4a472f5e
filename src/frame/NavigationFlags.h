#pragma once

class Frame;

/// Lets the two toggles of Tools > History set the frame's navigation flags.
void registerNavigationFlags(Frame &frame);

/// The flags as the two marks stand at the start.
void applyNavigationFlags(Frame &frame);
