#pragma once

class MainWindow;

/// The lines of a page's menu for fields, and for text that is selected.
void registerTextCommands(MainWindow &frame);
