#pragma once

class Frame;

/// The Navigation menu: history, stop and refresh of the active window or of all of them, and the
/// start page.
void registerNavigationCommands(Frame &frame);
