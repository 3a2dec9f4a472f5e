#pragma once

class MainWindow;

/// Registers every command of the program with the frame and closes its command table: after this
/// each menu item has its handler.
void registerAllCommands(MainWindow &frame);
