#pragma once

#include <QProxyStyle>

class QStyleOptionTitleBar;

/// The title bars of inner windows, and the buttons of a maximized one in the menu bar. The usual
/// style paints the buttons of a window that is not active in black whatever the palette, which
/// nobody finds on a dark title bar; here they are as light as those of the active window. There,
/// on the highlight colour, the program's own icons are as light as the caption. Captions are
/// painted as they stand (see PlainCaption). Those of private windows are dark.
class TitleBarStyle : public QProxyStyle {
public:
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option,
                       const QWidget *widget) const override;

private:
    void putWholeCaption(QStyleOptionTitleBar &bar, const QWidget &window) const;
};
