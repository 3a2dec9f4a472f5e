#include "FlatButtonPaint.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace {
constexpr double radius = 4;

QColor withAlpha(QColor colour, double alpha)
{
    colour.setAlphaF(float(alpha));
    return colour;
}
}

QColor FlatButtonPaint::tint(const QPalette &palette, double strength)
{
    return withAlpha(palette.color(QPalette::WindowText), strength);
}

void FlatButtonPaint::background(QPainter &painter, const QRectF &rect, const QPalette &palette,
                                 bool hover, bool down, bool pressed, bool focus)
{
    const QRectF inner = rect.adjusted(0.5, 0.5, -0.5, -0.5);
    const QColor highlight = palette.color(QPalette::Highlight);
    painter.setPen(Qt::NoPen);
    if (pressed) {
        painter.setPen(QPen(withAlpha(highlight, 0.65), 1));
        painter.setBrush(withAlpha(highlight, hover ? 0.34 : 0.24));
        painter.drawRoundedRect(inner, radius, radius);
    }
    if (down || (hover && !pressed)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint(palette, down ? 0.18 : 0.09));
        painter.drawRoundedRect(inner, radius, radius);
    }
    if (focus) {
        painter.setPen(QPen(highlight, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(inner.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }
}

void FlatButtonPaint::arrow(QPainter &painter, const QRectF &area, const QColor &colour)
{
    const QPointF middle = area.center();
    QPainterPath path;
    path.moveTo(middle + QPointF(-3, -1.5));
    path.lineTo(middle + QPointF(0, 1.5));
    path.lineTo(middle + QPointF(3, -1.5));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
}
