#include "StripMark.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace {
/// Pixels.
constexpr int gap = 4;
}

StripMark::StripMark(QWidget *parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    hide();
}

void StripMark::setWords(const QString &words, const QString &tip)
{
    setText(words);
    setAccessibleName(words);
    setToolTip(words.isEmpty() ? words : tip);
    setAccessibleDescription(toolTip());
    // Else the window would hand it the keyboard, which is the page's, though it is not seen.
    setFocusPolicy(words.isEmpty() ? Qt::NoFocus : Qt::TabFocus);
    setVisible(!words.isEmpty());
    update();
}

QSize StripMark::sizeHint() const
{
    const int sign = signWidth() > 0 ? signWidth() + gap : 0;
    // Widths of letters are rounded.
    const int words = fontMetrics().horizontalAdvance(text()) + 2;
    return {2 * gap + sign + words, fontMetrics().height() + 2};
}

void StripMark::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || hasFocus() || isDown()) {
        QColor ground = palette().color(QPalette::WindowText);
        ground.setAlphaF(isDown() ? 0.2F : 0.1F);
        painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 1.5)
                                  : QPen(Qt::NoPen));
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3, 3);
    }
    QRect words = rect().adjusted(gap, 0, -gap, 0);
    if (const int width = signWidth(); width > 0) {
        paintSign(painter,
                  QStyle::alignedRect(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter,
                                      QSize(width, width), words));
        words = QStyle::visualRect(layoutDirection(), words, words.adjusted(width + gap, 0, 0, 0));
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(words, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, words.width()));
}

void StripMark::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
