#include "TitleBarStyle.h"

#include <QStyleOption>

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
    const auto *bar = qstyleoption_cast<const QStyleOptionTitleBar *>(option);
    if (control != CC_TitleBar || !bar || !isDarkAndInactive(*bar)
        || baseStyle()->name() != "fusion"_L1) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    // Painted as an active one on the ground of those that are not.
    QStyleOptionTitleBar lit = *bar;
    lit.titleBarState |= State_Active;
    lit.palette.setColor(QPalette::Highlight, bar->palette.color(QPalette::Window));
    QProxyStyle::drawComplexControl(control, &lit, painter, widget);
}
