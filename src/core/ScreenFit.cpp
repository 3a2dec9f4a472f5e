#include "ScreenFit.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

void resizeToScreen(QWidget &window, QSize wanted)
{
    // What the desktop puts around a window is known only once that is shown; it is close to what
    // the toolkit puts around windows within one.
    const QStyle &style = *window.style();
    const int border = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &window);
    const int title = style.pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    const QSize around(2 * border, title + 2 * border);
    window.resize(wanted.boundedTo(window.screen()->availableSize() - around));
}
