#pragma once

class MainWindow;

/// What is run by keys alone, and the list of all keys.
void registerKeyCommands(MainWindow &frame);
