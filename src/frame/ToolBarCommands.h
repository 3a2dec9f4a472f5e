#pragma once

class CoolBar;
class Frame;
class FrameBody;
class LinksBar;

/// View > Tool Bar: showing the strip and its bands, and docking it. Each command writes its one
/// setting at once.
void registerToolBarCommands(Frame &frame, CoolBar &bar, FrameBody &body, LinksBar &links);

/// The items for single bands can be used only while the strip is shown.
void enableBandItems(Frame &frame, bool enabled);
