#include "Logo.h"

#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize size(960, 400);

void paintGround(QPainter &painter)
{
    QLinearGradient ground(0, 0, size.width(), size.height());
    ground.setColorAt(0, QColor(0x0f, 0x2c, 0x55));
    ground.setColorAt(0.55, QColor(0x1c, 0x4f, 0x8c));
    ground.setColorAt(1, QColor(0x2c, 0x86, 0x9c));
    painter.fillRect(QRect({}, size), ground);
}

// Windows behind windows, as in the frame, running out of the picture.
void paintPanes(QPainter &painter)
{
    for (int i = 0; i < 5; ++i) {
        const QRectF pane(560 + i * 70, 300 - i * 62, 380, 250);
        QPainterPath outline;
        outline.addRoundedRect(pane, 14, 14);
        painter.fillPath(outline, QColor(255, 255, 255, 11));
        painter.setPen(QPen(QColor(255, 255, 255, 28), 2));
        painter.drawPath(outline);
        painter.drawLine(pane.topLeft() + QPointF(0, 34), pane.topRight() + QPointF(0, 34));
    }
}

// The letters of the name as outlines, so that no installed font decides how it looks. Each is
// drawn on a height of 100 for lower case, with a pen of 20.
QPainterPath letter(QChar which, double &advance)
{
    QPainterPath path;
    const double bowl = 80;
    const QRectF round(10, 10, bowl, bowl);
    advance = 100;
    switch (which.unicode()) {
    case u'O':
        path.addEllipse(QRectF(10, -35, 125, 125));
        advance = 145;
        break;
    case u'r':
        path.moveTo(10, 90);
        path.lineTo(10, 45);
        path.arcTo(QRectF(10, 10, 70, 70), 180, -115);
        advance = 62;
        break;
    case u'v':
        path.moveTo(10, 10);
        path.lineTo(45, 90);
        path.lineTo(80, 10);
        advance = 90;
        break;
    case u'a':
        path.addEllipse(round);
        path.moveTo(90, 10);
        path.lineTo(90, 90);
        break;
    case u'n':
        path.moveTo(10, 90);
        path.lineTo(10, 47);
        path.arcTo(QRectF(10, 10, 74, 74), 180, -180);
        path.lineTo(84, 90);
        advance = 94;
        break;
    case u'e':
        path.moveTo(12, 50);
        path.lineTo(88, 50);
        path.arcTo(round, 0, 315);
        break;
    default:
        break;
    }
    return path;
}

void paintName(QPainter &painter, QPointF place)
{
    painter.setPen(QPen(Qt::white, 17, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.translate(place);
    painter.scale(0.85, 0.85);
    double left = 0;
    for (const QChar which : u"Orvane"_s) {
        double advance = 0;
        painter.drawPath(letter(which, advance).translated(left, 0));
        left += advance + 18;
    }
}

}

QImage logo(const QString &iconFile)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);
    paintPanes(painter);
    QSvgRenderer icon(iconFile);
    icon.render(&painter, QRectF(72, 110, 180, 180));
    paintName(painter, {294, 176});
    return image;
}
