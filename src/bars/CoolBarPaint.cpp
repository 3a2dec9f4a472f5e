#include "CoolBarPaint.h"

#include "FlatButtonPaint.h"

#include <QPainter>
#include <QPalette>
#include <QRect>

void CoolBarPaint::edge(QPainter &painter, const QRect &bar, const QPalette &palette, bool atTop)
{
    const int y = atTop ? bar.top() : bar.bottom();
    painter.fillRect(bar.left(), y, bar.width(), edgePixels, FlatButtonPaint::tint(palette, 0.22));
}

void CoolBarPaint::band(QPainter &painter, const QRect &bar, const QRect &band,
                        const QPalette &palette)
{
    const QColor line = FlatButtonPaint::tint(palette, 0.11);
    if (band.left() == bar.left() && band.bottom() + 1 < bar.bottom())
        painter.fillRect(bar.left(), band.bottom() + 1, bar.width(), linePixels, line);
    if (band.left() > bar.left())
        painter.fillRect(band.left(), band.top() + 4, 1, band.height() - 8, line);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(FlatButtonPaint::tint(palette, 0.38));
    const double middle = band.top() + band.height() / 2.0;
    for (const double y : {-6.0, -2.0, 2.0, 6.0})
        painter.drawEllipse(QPointF(band.left() + 6, middle + y), 1.1, 1.1);
    painter.restore();
}
