#pragma once

class QWidget;

/// Asks the user whether to leave, where the settings want it asked or downloads are under way,
/// once for both; true when the program may end.
bool mayExit(QWidget *frame);
