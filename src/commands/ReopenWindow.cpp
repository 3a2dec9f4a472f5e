#include "ReopenWindow.h"

#include "BrowserWindow.h"
#include "ClosedWindows.h"
#include "DeskPlaces.h"
#include "Factory.h"
#include "Frame.h"

#include <QMdiArea>
#include <QStyle>

namespace {
/// Inside the frame, whatever became of that meanwhile.
QRect placeInside(const QRect &place, const QMdiArea &area)
{
    return DeskPlaces::inside(place, area.viewport()->size(),
                              area.style()->pixelMetric(QStyle::PM_TitleBarHeight));
}
}

void reopenWindow(Frame &frame, const ClosedWindow &closed)
{
    const QMdiSubWindow *active = frame.activeChild();
    const bool isAmongMaximized = active && active->isMaximized();
    const auto state = closed.wasMaximized ? WindowState::Maximized : WindowState::AsOthers;
    BrowserWindow *window =
        openBrowserWindow(frame, closed.address, state, Loading::Asleep, closed.state);
    window->setTitle(closed.title);
    if (!closed.wasMaximized && !isAmongMaximized && closed.place.isValid())
        window->setGeometry(placeInside(closed.place, *window->mdiArea()));
    window->wake();
}
