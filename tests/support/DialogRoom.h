#pragma once

#include <QStringList>

class QWidget;

/// What of the texts in a shown window or bar lacks room, a line for each fault: a text that is
/// clipped, controls that overlap or reach out of their place, a window that is larger than a
/// screen of 1024 by 768. Empty when all is well.
QStringList roomFaults(const QWidget &window);

/// The access keys that two visible controls of the window share.
QStringList accessKeyFaults(const QWidget &window);
