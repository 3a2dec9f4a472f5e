#pragma once

#include <QRect>
#include <QString>

/// Where a control at `place` comes to by a script's request: "moveTo", "moveBy", "resizeTo" or
/// "resizeBy" and two whole numbers, parted by commas; pixels, inside the control's window. As ever
/// no script makes its page smaller than 100 pixels. A request that cannot be read changes nothing.
QRect scriptedPlace(QRect place, const QString &request);
