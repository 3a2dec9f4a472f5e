#include "LinkLabel.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace {
// Room for the focus frame; the text is to begin where that of other controls does.
constexpr QMargins margins(0, 2, 2, 2);
}

LinkLabel::LinkLabel(const QString &text, QWidget *parent)
    : QAbstractButton(parent)
{
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize LinkLabel::sizeHint() const
{
    const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
    return text.grownBy(margins);
}

QSize LinkLabel::minimumSizeHint() const
{
    return sizeHint();
}

void LinkLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect inside = rect().marginsRemoved(margins);
    QFont font = painter.font();
    font.setUnderline(underMouse());
    painter.setFont(font);
    const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(palette().color(group, isEnabled() ? QPalette::Link : QPalette::WindowText));
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, text());
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.backgroundColor = palette().color(QPalette::Window);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

void LinkLabel::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void LinkLabel::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

void LinkLabel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
