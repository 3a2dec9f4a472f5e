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

void refreshNow(QMdiArea *area)
{
    QRegion covered;
    const QList<QMdiSubWindow *> windows = area->subWindowList(QMdiArea::StackingOrder);
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        auto *browserWindow = qobject_cast<BrowserWindow *>(*window);
        if (browserWindow && !browserWindow->isUnloaded()) {
            const QRegion page(pageOf(*browserWindow) & area->viewport()->rect());
            browserWindow->setSeen(!browserWindow->isMinimized()
                                   && !page.subtracted(covered).isEmpty());
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
