#pragma once

class Frame;

/// The Edit menu: clipboard and selection commands for the page or for the address bar, whichever
/// the user works in, and finding in the page. The frame's window has its address bar by now.
void registerEditCommands(Frame &frame);
