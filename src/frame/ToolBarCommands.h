#pragma once

#include "CoolBar.h"

class Frame;
class FrameBody;
class LinksBar;

/// View > Tool Bar: the strip and its bands are shown while their items are marked; docking writes
/// its setting at once.
void registerToolBarCommands(Frame &frame, CoolBar &bar, FrameBody &body, LinksBar &links);

inline constexpr CoolBar::Dock dockSides[] = {CoolBar::Dock::Top, CoolBar::Dock::Bottom};
/// The menu item that docks the strip there.
QString dockItem(CoolBar::Dock side);
