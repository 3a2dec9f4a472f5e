#include "CoveredWindows.h"

#include "BrowserWindow.h"

#include <QEvent>
#include <QMdiArea>
#include <QRegion>
#include <QTimer>

namespace {
constexpr char pendingProperty[] = "coveredWindowsPending";

QRect pageOf(const BrowserWindow &window)
{
    const QWidget *page = window.browser()->widget();
    return {page->mapTo(&window, QPoint(0, 0)) + window.pos(), page->size()};
}

double areaOf(const QRegion &region)
{
    double area = 0;
    for (const QRect &part : region)
        area += double(part.width()) * part.height();
    return area;
}

/// Of a page at `place`, of which `visible` is not covered.
Sight sightOf(const QRect &place, const QRegion &visible)
{
    constexpr double enough = 0.25;
    if (visible.isEmpty())
        return Sight::None;
    return areaOf(visible) < enough * areaOf(place) ? Sight::Some : Sight::Enough;
}

void refreshNow(QMdiArea *area)
{
    QRegion covered;
    const QList<QMdiSubWindow *> windows = area->subWindowList(QMdiArea::StackingOrder);
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        auto *browserWindow = qobject_cast<BrowserWindow *>(*window);
        if (browserWindow && !browserWindow->isUnloaded()) {
            const QRect page = pageOf(*browserWindow);
            const QRegion visible = QRegion(page & area->viewport()->rect()).subtracted(covered);
            browserWindow->setSight(browserWindow->isMinimized() ? Sight::None
                                                                 : sightOf(page, visible));
        }
        if (!(*window)->isHidden())
            covered += (*window)->geometry();
    }
}

class Follower : public QObject {
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::ZOrderChange:
        case QEvent::Show:
        case QEvent::Hide:
            CoveredWindows::refresh(static_cast<QMdiSubWindow *>(watched)->mdiArea());
            break;
        default:
            break;
        }
        return false;
    }
};
}

namespace CoveredWindows {

void refresh(QMdiArea *area)
{
    if (!area || area->property(pendingProperty).toBool())
        return;
    area->setProperty(pendingProperty, true);
    QTimer::singleShot(0, area, [area] {
        area->setProperty(pendingProperty, false);
        refreshNow(area);
    });
}

void follow(QMdiSubWindow &window)
{
    static Follower follower;
    window.installEventFilter(&follower);
}

}
