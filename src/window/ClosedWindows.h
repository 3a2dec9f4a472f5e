#pragma once

#include "WebBrowser.h"

#include <QList>
#include <QRect>
#include <QString>
#include <optional>

class BrowserWindow;

/// A window that was closed: what it needs to come back as it was.
struct ClosedWindow {
    /// Names it among all of this run.
    int number = 0;
    QString address;
    QString title;
    PageState state;
    /// Of the normal state, pixels inside the frame's area.
    QRect place;
    bool wasMaximized = false;
    /// A page had opened it by itself.
    bool wasUnasked = false;
};

/// The windows that were closed last, the newest first to come back; known until the program ends,
/// and nowhere written down. Windows that leave no trace, and those that never had an address of
/// their own, are not among them. Those that pages opened by themselves have places of their own:
/// however many a page opens for its user to close, none of his windows is forgotten for them.
namespace ClosedWindows {
inline constexpr int most = 25;
/// Beside those, of windows that pages opened by themselves.
inline constexpr int mostUnasked = 5;

/// The user, or a page with his leave, is closing it.
void note(const BrowserWindow &window);
bool isEmpty();
/// The newest first.
const QList<ClosedWindow> &all();
/// The newest, which is forgotten then.
std::optional<ClosedWindow> take();
/// The one of that number, likewise; nothing where it has been forgotten.
std::optional<ClosedWindow> take(int number);
/// Forgets all.
void clear();
}
