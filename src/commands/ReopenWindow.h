#pragma once

class Frame;
struct ClosedWindow;

/// Opens a window that was closed as it was: its page, and its place where that is in sight yet.
void reopenWindow(Frame &frame, const ClosedWindow &closed);
