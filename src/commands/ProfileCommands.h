#pragma once

class MainWindow;

/// Saving the addresses of all browser windows as a profile, and opening profiles: from the menu,
/// and for the frame (the command line, a dropped file).
void registerProfileCommands(MainWindow &frame);
