#include "SleepPicture.h"

#include <QBuffer>
#include <QMouseEvent>
#include <QPainter>

namespace {
/// Half the size in each direction is enough for a glance.
constexpr int coarseness = 2;
constexpr int quality = 60;

/// Of the window that `widget` is in, as it is at that moment; empty where nothing around has one.
QString titleAround(const QWidget &widget)
{
    for (const QWidget *each = &widget; each; each = each->parentWidget()) {
        if (!each->windowTitle().isEmpty())
            return each->windowTitle();
    }
    return {};
}
}

QByteArray SleepPicture::packed(const QPixmap &page)
{
    if (page.isNull())
        return {};
    const QSize size = (page.deviceIndependentSize() / coarseness).toSize().expandedTo({1, 1});
    QBuffer buffer;
    buffer.open(QBuffer::WriteOnly);
    page.toImage()
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .save(&buffer, "JPG", quality);
    QByteArray bytes = buffer.data();
    bytes.squeeze();
    return bytes;
}

SleepPicture::SleepPicture(const QByteArray &picture, QWidget *parent)
    : QWidget(parent)
    , m_packed(picture)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void SleepPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QImage picture = QImage::fromData(m_packed, "JPG");
    painter.fillRect(rect(), palette().base());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // One of a window that had another size is not stretched.
    if (picture.isNull())
        paintTitle(painter);
    else
        painter.drawImage(QRect(QPoint(), picture.size() * coarseness), picture);
}

void SleepPicture::paintTitle(QPainter &painter) const
{
    constexpr int margin = 12;
    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::Text));
    const QRect place = rect().adjusted(margin, 0, -margin, 0);
    painter.drawText(
        place, Qt::AlignCenter,
        painter.fontMetrics().elidedText(titleAround(*this), Qt::ElideRight, place.width()));
}

void SleepPicture::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    emit pressed();
}
