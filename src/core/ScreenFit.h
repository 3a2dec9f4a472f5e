#pragma once

#include <QSize>

class QWidget;

/// Gives a top-level window the size it likes best, or what its screen has room for with a title
/// bar and borders around it.
void resizeToScreen(QWidget &window, QSize wanted);
