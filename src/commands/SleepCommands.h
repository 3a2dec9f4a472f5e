#pragma once

class BrowserWindow;
class Frame;

/// The items of the Window menu that give pages up, and bring closed windows back.
void registerSleepCommands(Frame &frame);

/// The user wants it to sleep: he is asked first where something may be lost by it.
void sleepWindow(Frame &frame, BrowserWindow &window);
