#pragma once

class Frame;

/// The items of the Window menu that give pages up, and bring closed windows back.
void registerSleepCommands(Frame &frame);
