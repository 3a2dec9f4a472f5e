#pragma once

class Frame;

/// The File menu's own items: new windows, closing them and leaving the program.
void registerFileCommands(Frame &frame);
