#include "UseDot.h"

#include <QPainter>

void paintUseDot(QPainter &painter, const QRect &place)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 1));
    painter.setBrush(QColor(208, 24, 32));
    painter.drawEllipse(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}
