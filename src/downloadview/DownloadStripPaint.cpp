// The strip as a widget: how it looks, its size and its keys.
#include "DownloadStrip.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace {

constexpr int gap = 8;
constexpr int barWidth = 160;
constexpr int barHeight = 6;
/// Of a subject, in average letters.
constexpr int mostLetters = 50;
constexpr int leastLetters = 12;

void paintBar(QPainter &painter, const QRect &rect, int share, const QPalette &palette)
{
    constexpr double radius = barHeight / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.mid());
    painter.drawRoundedRect(rect, radius, radius);
    QRect part = rect;
    part.setWidth(std::max(rect.width() * share / 100, share > 0 ? barHeight : 0));
    painter.setBrush(palette.highlight());
    painter.drawRoundedRect(part, radius, radius);
    painter.restore();
}

}

QSize DownloadStrip::sizeHint() const
{
    const int icon = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    return {barWidth, std::max(icon, fontMetrics().height()) + gap};
}

QSize DownloadStrip::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

void DownloadStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = palette().color(QPalette::Window);
    style()->drawPrimitive(QStyle::PE_PanelStatusBar, &option, &painter, this);
    if (isDown() || underMouse())
        painter.fillRect(rect(), palette().color(isDown() ? QPalette::Mid : QPalette::Midlight));
    if (hasFocus())
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);

    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    QRect room = rect().adjusted(gap, 0, -gap, 0);
    const auto take = [this, &room](int width) {
        const QRect part(room.left(), room.top(), std::min(width, room.width()), room.height());
        room.setLeft(part.right() + 1 + gap);
        return QStyle::visualRect(layoutDirection(), rect(), part);
    };
    icon().paint(&painter, take(iconSize));

    const QFontMetrics metrics = fontMetrics();
    const int letter = metrics.averageCharWidth();
    const int rest = metrics.horizontalAdvance(m_told.rest) + gap;
    const bool hasBar =
        m_told.share >= 0 && room.width() > rest + barWidth + 2 * gap + leastLetters * letter;
    const int subjectRoom = std::clamp(room.width() - rest - (hasBar ? barWidth + gap : 0),
                                       leastLetters * letter, mostLetters * letter);
    const QString subject = metrics.elidedText(m_told.subject, Qt::ElideMiddle, subjectRoom);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(take(metrics.horizontalAdvance(subject)),
                     Qt::AlignVCenter | Qt::TextSingleLine, subject);
    if (hasBar) {
        QRect bar = take(barWidth);
        bar.adjust(0, (bar.height() - barHeight) / 2, 0, 0);
        bar.setHeight(barHeight);
        paintBar(painter, bar, m_told.share, palette());
    }
    const QRect place = take(room.width());
    painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(m_told.rest, Qt::ElideRight, place.width()));
}

void DownloadStrip::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QPushButton::keyPressEvent(event);
}
