#include "ClosedWindows.h"

#include "BrowserWindow.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace {
QList<ClosedWindow> &windows()
{
    static QList<ClosedWindow> all;
    return all;
}

/// One that a page asked for and never sent anywhere, or that was opened on nothing.
bool isNowhere(const QString &address)
{
    return address.isEmpty() || address.startsWith("about:"_L1, Qt::CaseInsensitive);
}

/// Of those that pages opened by themselves, or of the others.
void forgetOldest(bool isUnasked)
{
    int left = isUnasked ? ClosedWindows::mostUnasked : ClosedWindows::most;
    windows().removeIf([isUnasked, &left](const ClosedWindow &window) {
        return window.wasUnasked == isUnasked && --left < 0;
    });
}

QRect normalPlace(const BrowserWindow &window)
{
    return window.isMaximized() || window.isMinimized() ? window.normalGeometry()
                                                        : window.geometry();
}
}

namespace ClosedWindows {

void note(const BrowserWindow &window)
{
    const QString address = window.shownAddress();
    if (window.isPopup || window.isPrivate() || isNowhere(address)
        || !window.browser()->pageState(StateDepth::View).leavesTrace)
        return;
    windows().prepend({address, window.windowTitle(), window.browser()->pageState(),
                       normalPlace(window), window.isMaximized(), window.isUnasked()});
    forgetOldest(window.isUnasked());
}

bool isEmpty()
{
    return windows().isEmpty();
}

std::optional<ClosedWindow> take()
{
    return windows().isEmpty() ? std::nullopt : std::optional(windows().takeFirst());
}

void clear()
{
    windows().clear();
}

}
