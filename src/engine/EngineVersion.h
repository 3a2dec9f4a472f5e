#pragma once

#include <QtGlobal>

// What the engine that this is built against offers beyond Qt 6.4, the oldest one that is built
// against. Code asks for these, never for a version; what only works around an older engine names
// the release that mended it beside it.

/// `QWebEnginePermission` and `QWebEnginePage::permissionRequested`; those before are deprecated.
#define ORVANE_HAS_PERMISSION_OBJECTS (QT_VERSION >= QT_VERSION_CHECK(6, 8, 0))
/// `QWebEnginePage::desktopMediaRequested`, with the screens and windows to choose from; a page
/// that wants to see the screen asks for nothing else. Before, the whole screen was one of its
/// features.
#define ORVANE_HAS_SCREEN_CHOICE (QT_VERSION >= QT_VERSION_CHECK(6, 8, 0))
/// `QWebEngineFrame`; a frame's `print()` comes as `printRequestedByFrame`.
#define ORVANE_HAS_FRAMES (QT_VERSION >= QT_VERSION_CHECK(6, 8, 0))
/// `QWebEngineClientHints`: what a page is told of the browser beside the user agent.
#define ORVANE_HAS_CLIENT_HINTS (QT_VERSION >= QT_VERSION_CHECK(6, 8, 0))

/// A window that a page opens without an address is asked for with "about:blank", and nothing tells
/// it from one that is opened with that address: both begin empty, neither is a navigation.
inline constexpr bool emptyWindowsAreBlank = QT_VERSION >= QT_VERSION_CHECK(6, 5, 0);
/// What is saved always comes with the place that it is to be saved at; before, what is no markup
/// came without (QTBUG-117624).
inline constexpr bool savesBringTheirPlace = QT_VERSION >= QT_VERSION_CHECK(6, 6, 1);
/// One answer to a permission that a site asks for is given to all that it waits for, in whatever
/// page; before, to all that it waits for of the place or of notifications, whichever it is.
inline constexpr bool answersAreForAllKinds = ORVANE_HAS_PERMISSION_OBJECTS;
/// The form that a window is opened for comes to it as a form; later it comes as a link.
inline constexpr bool formsOpenAsForms = QT_VERSION < QT_VERSION_CHECK(6, 8, 0);
