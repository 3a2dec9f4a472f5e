#pragma once

#include "Desk.h"

#include <QList>

class Frame;

/// The desk as it is to come back: the windows there are, also those whose first page is still on
/// its way, but no private ones; behind them those of `pending`, which an earlier program left and
/// nobody has answered for yet.
Desk deskToKeep(Frame &frame, const Desk &pending);

/// `desk` with only the windows of these indices.
Desk only(const Desk &desk, const QList<qsizetype> &windows);
