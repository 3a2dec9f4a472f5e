#pragma once

class CoolBar;
class Frame;
class LinksBar;
class QWidget;

/// Sets menus, bands, tool bar buttons and navigation flags to the stored settings, in the order
/// in which they depend on each other. A value that is no boolean or number where one is expected
/// leaves its item as it is. Nothing is written but the docking side, back as it was read.
void applySettings(Frame &frame, CoolBar &bar, QWidget &searchBar, LinksBar &links);
