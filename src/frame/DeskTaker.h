#pragma once

#include "Desk.h"

class BrowserWindow;
class Frame;

/// The desk as it is at this moment, of those windows only. It asks no page and costs next to
/// nothing: windows that wait for their pages, or whose pages still load, are told of as they are
/// to come back.
Desk takeDesk(Frame &frame, const QList<BrowserWindow *> &windows);
