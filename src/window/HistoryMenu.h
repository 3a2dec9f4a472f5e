#pragma once

class QMenu;
class QWidget;
class WebBrowser;

enum class HistoryDirection { Back, Forward };

/// A menu of the pages that lie in one direction of a window's history, the nearest first; choosing
/// one goes there. Null when there is none. The menu deletes itself when it has closed.
QMenu *makeHistoryMenu(WebBrowser &browser, HistoryDirection direction, QWidget *owner);
