// How the windows of the area are cascaded, tiled and minimized beside each other.
#include "MdiArea.h"
#include "MdiArrange.h"

#include <QMdiSubWindow>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <utility>

int MdiArea::cascadeStep() const
{
    return style()->pixelMetric(QStyle::PM_TitleBarHeight)
        + style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
}

QRect MdiArea::cascadePlace(int index) const
{
    return MdiArrange::cascadePlace(index, QRect(QPoint(0, 0), maximumViewportSize()),
                                    cascadeStep());
}

QRect MdiArea::arrangeIcons()
{
    QRect rest(QPoint(0, 0), maximumViewportSize());
    QList<QMdiSubWindow *> minimized = childWindows();
    minimized.removeIf([](const QMdiSubWindow *child) { return !child->isMinimized(); });
    if (minimized.isEmpty())
        return rest;
    const QList<QRect> places =
        MdiArrange::icons(int(minimized.size()), rest, minimized.first()->size());
    for (qsizetype i = 0; i < minimized.size(); ++i)
        minimized.at(i)->move(places.at(i).topLeft());
    // Hundreds of minimized windows leave at least half of the area to the others.
    rest.setBottom(std::max(places.last().top() - 1, rest.height() / 2));
    return rest;
}

void MdiArea::arrange(Arrange how)
{
    QList<QMdiSubWindow *> windows = subWindowList(QMdiArea::StackingOrder);
    windows.removeIf(
        [](const QMdiSubWindow *child) { return child->isHidden() || child->isMinimized(); });
    QMdiSubWindow *active = activeChild();
    for (QMdiSubWindow *child : std::as_const(windows)) {
        if (child->isMaximized())
            child->showNormal();
    }
    horizontalScrollBar()->setValue(0);
    verticalScrollBar()->setValue(0);
    const QRect area = arrangeIcons();
    if (windows.isEmpty())
        return;
    // The active window ends in front, in a tiling also in the first cell.
    if (windows.removeOne(active))
        windows.append(active);
    QList<QRect> places;
    if (how == Arrange::Cascade) {
        places = MdiArrange::cascade(int(windows.size()), area, cascadeStep());
    } else {
        places = MdiArrange::tile(int(windows.size()), area, how);
        std::reverse(places.begin(), places.end());
    }
    for (qsizetype i = 0; i < windows.size(); ++i)
        windows.at(i)->setGeometry(places.at(i));
}
