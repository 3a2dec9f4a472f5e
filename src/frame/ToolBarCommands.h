#pragma once

class CoolBar;
class Frame;
class FrameBody;
class LinksBar;

/// View > Tool Bar: the strip and its bands are shown while their items are marked; docking writes
/// its setting at once.
void registerToolBarCommands(Frame &frame, CoolBar &bar, FrameBody &body, LinksBar &links);
