#pragma once

#include <QString>

#include "BrowserWindow.h"
#include "Desk.h"
#include "Frame.h"

/// The only way windows are made for the user: a new browser window on `url` (empty: the home
/// page), its tab the pressed one.
/// With `Later` and `Asleep` its page waits (`WebBrowser::navigateLater`), and comes with
/// `pageState`.
BrowserWindow *openBrowserWindow(Frame &frame, const QString &url, WindowState state,
                                 Loading loading = Loading::Now, const PageState &pageState = {});

/// A private one (empty `url`: a blank page).
BrowserWindow *openPrivateWindow(Frame &frame, const QString &url, WindowState state);

/// A window as a desk has it, at its place, in its normal state. `loading` is not `Now`.
BrowserWindow *openDeskWindow(Frame &frame, const DeskWindow &window,
                              Loading loading = Loading::Later);

/// Sends the active window to `url`. Where that has no page, a new one opens; the first window
/// comes up maximized.
void navigateActive(Frame &frame, const QString &url);
