#include "UseMark.h"

#include "Texts.h"
#include "UseDot.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {
/// Pixels.
constexpr int dotSize = 9;
constexpr int gap = 4;
}

UseMark::UseMark(QWidget *parent)
    : QAbstractButton(parent)
{
    setObjectName("cmdEndUse"_L1);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    hide();
}

void UseMark::setUse(const QString &text)
{
    setText(text);
    setAccessibleName(text);
    const QString tip =
        Texts<"Permissions">::at<"strEndUse", "%1. A click ends it, and loads the page anew.">()
            .arg(text);
    setToolTip(text.isEmpty() ? text : tip);
    setAccessibleDescription(toolTip());
    // Else the window would hand it the keyboard, which is the page's, though it is not seen.
    setFocusPolicy(text.isEmpty() ? Qt::NoFocus : Qt::TabFocus);
    setVisible(!text.isEmpty());
    update();
}

QSize UseMark::sizeHint() const
{
    return {2 * gap + dotSize + gap + fontMetrics().horizontalAdvance(text()),
            fontMetrics().height() + 2};
}

void UseMark::paintEvent(QPaintEvent *)
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
    const QRect inner = rect().adjusted(gap, 0, -gap, 0);
    paintUseDot(painter,
                QStyle::alignedRect(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter,
                                    QSize(dotSize, dotSize), inner));
    const QRect words =
        QStyle::visualRect(layoutDirection(), inner, inner.adjusted(dotSize + gap, 0, 0, 0));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(words, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text());
}

void UseMark::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
