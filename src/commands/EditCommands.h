#pragma once

class Frame;

/// The Edit menu: clipboard and selection commands for the page, the address bar or another field
/// of the frame (the find bar's, the search bar's), whichever the user works in, and finding in the
/// page. The frame's window has its address bar by now.
void registerEditCommands(Frame &frame);
