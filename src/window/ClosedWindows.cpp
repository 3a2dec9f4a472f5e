#include "ClosedWindows.h"

#include "BrowserWindow.h"
#include "OwnPages.h"

#include <QUrl>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
QList<ClosedWindow> &windows()
{
    static QList<ClosedWindow> all;
    return all;
}

/// One that a page asked for and never sent anywhere, or that was opened on nothing or on what can
/// be opened as it is at any time.
bool isNowhere(const QString &address)
{
    return address.isEmpty() || address.startsWith("about:"_L1, Qt::CaseInsensitive)
        || isOwnPage(QUrl(address));
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
    static int lastNumber = 0;
    windows().prepend({++lastNumber, address, window.windowTitle(), window.browser()->pageState(),
                       normalPlace(window), window.isMaximized(), window.isUnasked()});
    forgetOldest(window.isUnasked());
}

bool isEmpty()
{
    return windows().isEmpty();
}

const QList<ClosedWindow> &all()
{
    return windows();
}

std::optional<ClosedWindow> take()
{
    return windows().isEmpty() ? std::nullopt : std::optional(windows().takeFirst());
}

std::optional<ClosedWindow> take(int number)
{
    const auto found =
        std::find_if(windows().cbegin(), windows().cend(),
                     [number](const ClosedWindow &window) { return window.number == number; });
    if (found == windows().cend())
        return {};
    return windows().takeAt(found - windows().cbegin());
}

void clear()
{
    windows().clear();
}

}
