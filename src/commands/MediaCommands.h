#pragma once

class MainWindow;

/// The lines of a page's menu for pictures, videos and sounds.
void registerMediaCommands(MainWindow &frame);
