#include "ToolBarButton.h"

#include "FlatButtonPaint.h"
#include "ToolTipText.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QTimerEvent>
#include <QToolTip>
#include <algorithm>

namespace {
constexpr int iconPixels = 20;
constexpr int smallIconPixels = 16; // beside a text
constexpr int padding = 5;
constexpr int textGap = 5;
constexpr int arrowPixels = 13;
constexpr int mostTextPixels = 180;
constexpr int holdMilliseconds = 500;

int iconSizeFor(const QString &text)
{
    return text.isEmpty() ? iconPixels : smallIconPixels;
}
}

ToolBarButton::ToolBarButton(ToolBar *bar, int index, ToolBar::Style style)
    : QToolButton(bar)
    , m_bar(bar)
    , m_index(index)
    , m_style(style)
{
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QToolButton::clicked, bar,
            [this, bar] { emit bar->buttonClicked(key(), m_index + 1); });
}

QString ToolBarButton::key() const
{
    return m_bar->buttonKey(m_index + 1);
}

void ToolBarButton::setPressed(bool pressed)
{
    if (pressed == m_pressed)
        return;
    m_pressed = pressed;
    update();
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

int ToolBarButton::widthFor(const QWidget *bar, const QIcon &icon, const QString &text,
                            ToolBar::Style style)
{
    int width = 2 * padding;
    if (!icon.isNull() || text.isEmpty())
        width += iconSizeFor(text);
    if (!text.isEmpty()) {
        width += std::min(bar->fontMetrics().horizontalAdvance(text) + 1, mostTextPixels);
        width += icon.isNull() ? 0 : textGap;
    }
    return ToolBar::hasArrow(style) ? width + arrowPixels : width;
}

int ToolBarButton::heightFor(const QWidget *bar)
{
    return std::max(iconPixels, bar->fontMetrics().height()) + 2 * 4;
}

QRect ToolBarButton::arrowRect() const
{
    if (!ToolBar::hasArrow(m_style))
        return {};
    return QRect(width() - arrowPixels - 2, 0, arrowPixels + 2, height());
}

void ToolBarButton::openDropDown()
{
    if (!isEnabled())
        return;
    // The handler may run a menu's own loop, and may rebuild the bar in it.
    const QPointer<ToolBarButton> alive(this);
    m_dropped = true;
    update();
    emit m_bar->dropDown(key(), mapToGlobal(QPoint(0, height())));
    if (alive)
        followMenu();
}

// It looks down as long as its menu shows, whether or not the handler waited for that.
void ToolBarButton::followMenu()
{
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    m_dropped = menu != nullptr;
    update();
    if (!menu)
        return;
    menu->setAttribute(Qt::WA_NoMouseReplay); // a second press on the arrow closes, and that is all
    connect(
        menu, &QMenu::aboutToHide, this,
        [this] {
            m_dropped = false;
            update();
        },
        Qt::SingleShotConnection);
}

void ToolBarButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hover = isEnabled() && underMouse();
    FlatButtonPaint::background(painter, rect(), palette(), hover, isDown() || m_dropped, m_pressed,
                                hasFocus());
    const QColor ink =
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
    int left = padding;
    if (!icon().isNull()) {
        const int size = iconSizeFor(text());
        const QRect place(left, (height() - size) / 2, size, size);
        icon().paint(&painter, place, Qt::AlignCenter,
                     isEnabled() ? QIcon::Normal : QIcon::Disabled);
        left += size + textGap;
    }
    const int right = ToolBar::hasArrow(m_style) ? arrowPixels : 0;
    if (!text().isEmpty()) {
        const QRect place(left, 0, width() - left - padding - right, height());
        painter.setPen(ink);
        painter.setFont(m_bar->font()); // the one the width was reckoned with
        painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine,
                         m_bar->fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
    }
    if (right > 0) {
        if (hover)
            painter.fillRect(QRectF(arrowRect().left(), 5, 1, height() - 10),
                             FlatButtonPaint::tint(palette(), 0.2));
        FlatButtonPaint::arrow(painter, arrowRect(), ink);
    }
}

bool ToolBarButton::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || toolTip().isEmpty())
        return QToolButton::event(event);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), wrappedToolTip(toolTip()),
                       this, rect());
    return true;
}

void ToolBarButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
        m_bar->moveFocus(this, event->key());
        return;
    case Qt::Key_Down:
        if (ToolBar::hasArrow(m_style))
            openDropDown();
        return;
    case Qt::Key_Up: // a plain button would walk on to its neighbours in other bars
        return;
    default:
        QToolButton::keyPressEvent(event);
    }
}

void ToolBarButton::mousePressEvent(QMouseEvent *event)
{
    const QPoint pos = event->position().toPoint();
    if (event->button() == Qt::LeftButton && arrowRect().contains(pos)) {
        event->accept();
        openDropDown();
        return;
    }
    QToolButton::mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        m_hold.start(holdMilliseconds, this);
}

void ToolBarButton::mouseReleaseEvent(QMouseEvent *event)
{
    m_hold.stop();
    QToolButton::mouseReleaseEvent(event);
}

void ToolBarButton::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_hold.timerId())
        return QToolButton::timerEvent(event);
    m_hold.stop();
    if (!isDown() || !m_bar->wantsLongPress())
        return;
    setDown(false); // no click follows
    emit m_bar->longPressed(key(), mapToGlobal(QPoint(0, height())));
}

void ToolBarButton::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    emit m_bar->rightClicked(key(), event->globalPos());
}

void ToolBarButton::focusInEvent(QFocusEvent *event)
{
    m_bar->setTabStop(this);
    QToolButton::focusInEvent(event);
}
