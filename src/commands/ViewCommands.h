#pragma once

class Frame;

/// The View menu's items for the page: the size of its text, refreshing, and its live markup in a
/// source window.
void registerViewCommands(Frame &frame);
