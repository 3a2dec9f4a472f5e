#pragma once

#include <QPointer>
#include <QString>

#include "BrowserWindow.h"

class Frame;

/// The only way windows are made for the user: a new browser window on `url` (empty: the home
/// page), its tab the pressed one. `state` 2 shows it maximized; with any other value it comes up
/// as the frame's children do (maximized while the active one is).
/// With `Later` its page waits (`WebBrowser::navigateLater`). The window, unless it has gone
/// already: pending events have run.
QPointer<BrowserWindow> openBrowserWindow(Frame &frame, const QString &url, int state,
                                          Loading loading = Loading::Now);

/// Sends the active window to `url`; the first window comes up maximized.
void navigateActive(Frame &frame, const QString &url);
