#include "CoveredWindows.h"

#include "frmBrowser.h"

#include <QMdiArea>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
constexpr char pendingProperty[] = "coveredWindowsPending";

void refreshNow(QMdiArea *area)
{
    const QMdiSubWindow *front = area->currentSubWindow();
    const bool covers = front && front->isMaximized() && !front->isHidden();
    const QList<QMdiSubWindow *> windows = area->subWindowList();
    for (QMdiSubWindow *window : windows) {
        auto *browserWindow = qobject_cast<frmBrowser *>(window);
        if (browserWindow && !browserWindow->isUnloaded())
            browserWindow->brwWebBrowser()->setShown(!covers || window == front);
    }
}
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

}
