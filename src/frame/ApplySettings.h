#pragma once

class CoolBar;
class Frame;
class LinksBar;

/// Sets the marks of the menu to the stored settings, whereupon bands, side bar and buttons follow
/// them, then the docking side, the navigation flags and the links. A value that is no boolean or
/// number where one is expected leaves its item as it is. Nothing is written but the docking side,
/// back as it was read.
void applySettings(Frame &frame, CoolBar &bar, LinksBar &links);
