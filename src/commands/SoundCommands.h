#pragma once

class Frame;

/// Window > Mute and Mute All Others.
void registerSoundCommands(Frame &frame);
