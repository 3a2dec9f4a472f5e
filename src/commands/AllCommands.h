#pragma once

class frmMain;

/// Registers every command of the program with the frame and closes its command table: after this
/// each menu item has its handler.
void registerAllCommands(frmMain &frame);
