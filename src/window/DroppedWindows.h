#pragma once

#include "Frame.h"

#include <QStringList>

/// Opens addresses that the user let go at once, each in a window of its own and in a turn of the
/// event loop of its own: the program that they come from waits for the drop to end, and the frame
/// stays usable. The first comes as `first` says, the others behind; closing all windows ends it.
/// More than fifteen are asked about first.
void openDropped(Frame &frame, const QStringList &addresses, Privacy privacy, WindowState first);
