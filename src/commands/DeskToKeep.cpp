#include "DeskToKeep.h"

#include "AddressCompletion.h"
#include "BrowserWindow.h"
#include "DeskTaker.h"
#include "Settings.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Also while the first page is on its way; one that holds nothing has none.
QString addressOf(const BrowserWindow &window)
{
    const QString address = window.browser()->locationUrl();
    if (!address.isEmpty() || window.isPopup)
        return address;
    const QString coming = window.shownAddress();
    return coming.startsWith("about:"_L1, Qt::CaseInsensitive) ? QString() : coming;
}

/// No window is lost to an end of the program before its page has come.
Desk takenWithComing(Frame &frame, const QList<BrowserWindow *> &windows)
{
    Desk desk = takeDesk(frame, windows);
    for (qsizetype i = 0; i < windows.size(); ++i)
        desk.windows[i].address = addressOf(*windows.at(i));
    return desk;
}

/// With the windows of `behind` behind those of `desk`.
Desk joined(Desk desk, const Desk &behind)
{
    const int shift = int(behind.windows.size());
    for (DeskWindow &window : desk.windows)
        window.order += shift;
    if (behind.active >= 0)
        desk.active = int(desk.windows.size()) + behind.active;
    desk.windows.append(behind.windows);
    return desk;
}

/// As the engine writes it, which takes some forms for one.
QUrl plain(const QString &text)
{
    QUrl address = completeAddress(text);
    if (address.path().isEmpty() && !address.host().isEmpty())
        address.setPath(u"/"_s);
    constexpr int httpPort = 80;
    constexpr int httpsPort = 443;
    if (address.port() == (address.scheme() == "https"_L1 ? httpsPort : httpPort))
        address.setPort(-1);
    return address.adjusted(QUrl::NormalizePathSegments);
}
}

Desk deskToKeep(Frame &frame, const Desk &pending)
{
    QList<BrowserWindow *> windows = browserForms();
    windows.removeIf([](const BrowserWindow *window) { return !window->mayBeKept(); });
    if (pending.windows.isEmpty())
        return takenWithComing(frame, windows);
    // The page that each start opens by itself would be one more each time.
    const QUrl home = plain(Settings::homeUrl.read());
    windows.removeIf([&home](const BrowserWindow *window) {
        return !home.isEmpty() && plain(addressOf(*window)) == home;
    });
    return joined(takenWithComing(frame, windows), pending);
}

Desk only(const Desk &desk, const QList<qsizetype> &windows)
{
    Desk result = desk;
    result.windows.clear();
    for (const qsizetype index : windows)
        result.windows.append(desk.windows.at(index));
    result.active = int(windows.indexOf(desk.active));
    return result;
}
