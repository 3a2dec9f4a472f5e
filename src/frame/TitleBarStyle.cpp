#include "TitleBarStyle.h"

#include "InnerWindow.h"
#include "PlainCaption.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {
/// A private window's, whether the desktop is light or dark.
void darken(QStyleOptionTitleBar &bar)
{
    const bool isActive = bar.titleBarState & QStyle::State_Active;
    bar.titleBarState |= QStyle::State_Active;
    bar.palette.setColor(QPalette::Highlight, isActive ? QColor(0x2e2a3d) : QColor(0x5c5869));
    bar.palette.setColor(QPalette::HighlightedText, isActive ? Qt::white : QColor(0xd8d6de));
}

bool isDarkAndInactive(const QStyleOptionTitleBar &bar)
{
    return !(bar.titleBarState & QStyle::State_Active)
        && bar.palette.color(QPalette::Window).lightness() < 128;
}
}

void TitleBarStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                       QPainter *painter, const QWidget *widget) const
{
    const auto *given = qstyleoption_cast<const QStyleOptionTitleBar *>(option);
    if (control != CC_TitleBar || !given) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    QStyleOptionTitleBar bar = *given;
    if (widget && PlainCaption::isNeededFor(widget->windowTitle()))
        putWholeCaption(bar, *widget);
    if (const auto *window = qobject_cast<const InnerWindow *>(widget);
        window && window->isPrivate())
        darken(bar);
    // Pages' own icons have no name; they stay as they are.
    if (bar.titleBarState & State_Active && !bar.icon.name().isEmpty()) {
        const QSize size = subControlRect(CC_TitleBar, &bar, SC_TitleBarSysMenu, widget).size();
        bar.icon = bar.icon.pixmap(size, painter->device()->devicePixelRatioF(), QIcon::Selected);
    }
    if (isDarkAndInactive(bar) && baseStyle()->name() == "fusion"_L1) {
        // Painted as an active one on the ground of those that are not.
        bar.titleBarState |= State_Active;
        bar.palette.setColor(QPalette::Highlight, bar.palette.color(QPalette::Window));
    }
    QProxyStyle::drawComplexControl(control, &bar, painter, widget);
}

QIcon TitleBarStyle::standardIcon(StandardPixmap which, const QStyleOption *option,
                                  const QWidget *widget) const
{
    const QIcon icon = QProxyStyle::standardIcon(which, option, widget);
    const QColor ink = QApplication::palette().color(QPalette::ButtonText);
    const bool isButton = which == SP_TitleBarMinButton || which == SP_TitleBarNormalButton
        || which == SP_TitleBarCloseButton;
    if (!isButton || ink.lightness() < 128)
        return icon;
    const int size = pixelMetric(PM_SmallIconSize, option, widget);
    QPixmap shape = icon.pixmap(QSize(size, size), qApp->devicePixelRatio());
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), ink);
    return shape;
}

void TitleBarStyle::putWholeCaption(QStyleOptionTitleBar &bar, const QWidget &window) const
{
    bar.text = window.windowTitle();
    const int room = subControlRect(CC_TitleBar, &bar, SC_TitleBarLabel, &window).width();
    bar.text = bar.fontMetrics.elidedText(bar.text, Qt::ElideRight, room);
}
