#include "TitleBarStyle.h"

#include "PlainCaption.h"

#include <QStyleOption>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {
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
    if (isDarkAndInactive(bar) && baseStyle()->name() == "fusion"_L1) {
        // Painted as an active one on the ground of those that are not.
        bar.titleBarState |= State_Active;
        bar.palette.setColor(QPalette::Highlight, bar.palette.color(QPalette::Window));
    }
    QProxyStyle::drawComplexControl(control, &bar, painter, widget);
}

void TitleBarStyle::putWholeCaption(QStyleOptionTitleBar &bar, const QWidget &window) const
{
    bar.text = window.windowTitle();
    const int room = subControlRect(CC_TitleBar, &bar, SC_TitleBarLabel, &window).width();
    bar.text = bar.fontMetrics.elidedText(bar.text, Qt::ElideRight, room);
}
