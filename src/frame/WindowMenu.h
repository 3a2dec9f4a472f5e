#pragma once

#include <QString>

class Frame;
class MdiArea;
class QMdiSubWindow;
class QMenu;
class TabStrip;

/// Gives the Window menu its handlers, and keeps `openBrowsers` a live list
/// of the children, built each time it opens.
void registerWindowCommands(Frame &frame, MdiArea &area, QMenu &openBrowsers);

/// Connects the tab strip: a click activates the tab's window, a middle click closes it, and the
/// right button's release shows `openBrowsers` while there is an active child. What is dropped
/// there opens in new windows. The forms are in the order of their tabs.
void connectTabStrip(TabStrip &strip, Frame &frame, QMenu &openBrowsers);

/// Restores the window of a tab if it is minimized, makes it the active child and shows its
/// address. A key without a window does nothing.
void activateTab(Frame &frame, const QString &key);
