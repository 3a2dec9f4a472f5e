#include "ToolBar.h"

#include "FlatButtonPaint.h"
#include "TabOrder.h"
#include "ToolBarAccessible.h"
#include "ToolBarButton.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMetaMethod>
#include <QPainter>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int separatorPixels = 7;
}

ToolBar::ToolBar(QWidget *parent)
    : QWidget(parent)
{
    ToolBarAccessible::install();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ToolBar::addButton(const QString &key, const QString &toolTip, const QIcon &icon, Style style,
                        const QString &text)
{
    Item item;
    item.key = key;
    item.toolTip = toolTip;
    item.icon = icon;
    item.style = style;
    item.text = text;
    m_items.append(item);
    itemsChanged();
}

void ToolBar::addSeparator()
{
    Item item;
    item.separator = true;
    m_items.append(item);
    itemsChanged();
}

void ToolBar::clear()
{
    for (Item &item : m_items)
        dropButton(item);
    m_items.clear();
    itemsChanged();
}

void ToolBar::setEmptyText(const QString &text)
{
    if (text == m_emptyText)
        return;
    m_emptyText = text;
    setAccessibleDescription(text);
    update();
}

// A button may be cleared away from inside its own click.
void ToolBar::dropButton(Item &item)
{
    if (!item.button)
        return;
    item.button->hide();
    item.button->disconnect(this);
    item.button->deleteLater();
    item.button = nullptr;
}

const ToolBar::Item *ToolBar::item(int index1) const
{
    return index1 >= 1 && index1 <= buttonCount() ? &m_items.at(index1 - 1) : nullptr;
}

int ToolBar::indexOf(const QString &key) const
{
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        if (!m_items.at(i).separator && m_items.at(i).key == key)
            return int(i);
    }
    return -1;
}

QString ToolBar::buttonKey(int index1) const
{
    const Item *found = item(index1);
    return found ? found->key : QString();
}

QString ToolBar::toolTip(int index1) const
{
    const Item *found = item(index1);
    return found ? found->toolTip : QString();
}

QString ToolBar::text(int index1) const
{
    const Item *found = item(index1);
    return found ? found->text : QString();
}

void ToolBar::setToolTip(int index1, const QString &toolTip)
{
    if (!item(index1) || item(index1)->separator)
        return;
    m_items[index1 - 1].toolTip = toolTip;
    showState(m_items.at(index1 - 1));
}

bool ToolBar::isPressed(const QString &key) const
{
    const int index = indexOf(key);
    return index >= 0 && m_items.at(index).pressed;
}

void ToolBar::setPressed(const QString &key, bool pressed)
{
    const int index = indexOf(key);
    if (index < 0)
        return;
    m_items[index].pressed = pressed;
    showState(m_items.at(index));
}

QRect ToolBar::buttonRect(int index1)
{
    if (m_layoutPending)
        layOut();
    const Item *found = item(index1);
    return found && found->button ? found->button->geometry() : QRect();
}

// A thousand buttons are added with one layout: Qt keeps one such event per receiver.
void ToolBar::itemsChanged()
{
    m_fullWidth = -1;
    m_layoutPending = true;
    QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
    updateGeometry();
}

int ToolBar::fullWidth() const
{
    if (m_fullWidth < 0) {
        int width = 0;
        int sum = 0;
        for (const Item &item : m_items) {
            sum += widthOf(item);
            if (!item.separator)
                width = sum; // a separator at the end is not shown
        }
        m_fullWidth = width;
    }
    return m_fullWidth;
}

int ToolBar::widthOf(const Item &item) const
{
    if (item.separator)
        return separatorPixels;
    if (item.width < 0)
        item.width = ToolBarButton::widthFor(this, item.icon, item.text, item.style);
    return item.width;
}

QString ToolBar::nameOf(const Item &item)
{
    return item.text.isEmpty() ? item.toolTip : item.text;
}

bool ToolBar::wantsLongPress() const
{
    return isSignalConnected(QMetaMethod::fromSignal(&ToolBar::longPressed));
}

void ToolBar::layOut()
{
    m_layoutPending = false;
    int left = 0;
    for (int i = 0; i < buttonCount(); ++i) {
        const int right = left + widthOf(m_items.at(i));
        if (!m_items.at(i).separator) {
            if (right <= width())
                placeButton(i, QRect(left, 0, right - left, height()));
            else
                dropButton(m_items[i]);
        }
        // Past the end every further one is dropped; without a button there is nothing to do.
        left = std::min(right, QWIDGETSIZE_MAX);
    }
    keepTabStop();
    update();
}

void ToolBar::placeButton(int index, const QRect &place)
{
    Item &item = m_items[index];
    if (!item.button) {
        item.button = new ToolBarButton(this, index, item.style);
        // A widget made late stands last in its window's Tab order.
        const QList<ToolBarButton *> shown = shownButtons();
        const auto at = shown.indexOf(item.button);
        putInTabOrder(at > 0 ? static_cast<QWidget *>(shown.at(at - 1)) : this, item.button);
        showState(item);
    }
    item.button->setGeometry(place);
    item.button->show();
}

void ToolBar::showState(const Item &item)
{
    ToolBarButton *button = item.button;
    if (!button)
        return;
    button->setObjectName(item.key);
    button->setIcon(item.icon);
    button->setText(item.text);
    button->setShortcut({}); // an "&" in the name of a link is no access key
    button->setToolTip(item.toolTip);
    button->setAccessibleName(nameOf(item));
    button->setAccessibleDescription(item.text.isEmpty() ? QString() : item.toolTip);
    button->setPressed(item.pressed);
}

QList<ToolBarButton *> ToolBar::shownButtons() const
{
    QList<ToolBarButton *> buttons;
    for (const Item &item : m_items) {
        if (item.button)
            buttons.append(item.button);
    }
    return buttons;
}

// Exactly one shown button takes the Tab key: the one that had the focus last.
void ToolBar::keepTabStop()
{
    const QList<ToolBarButton *> buttons = shownButtons();
    const auto isStop = [](const ToolBarButton *b) { return b->focusPolicy() & Qt::TabFocus; };
    if (!buttons.isEmpty() && std::none_of(buttons.begin(), buttons.end(), isStop))
        setTabStop(buttons.first());
}

void ToolBar::setTabStop(ToolBarButton *stop)
{
    const QList<ToolBarButton *> buttons = shownButtons();
    for (ToolBarButton *button : buttons)
        button->setFocusPolicy(button == stop ? Qt::TabFocus : Qt::NoFocus);
}

void ToolBar::moveFocus(ToolBarButton *from, int key)
{
    const QList<ToolBarButton *> buttons = shownButtons();
    const auto last = buttons.size() - 1;
    auto at = buttons.indexOf(from);
    switch (key) {
    case Qt::Key_Home:
        at = 0;
        break;
    case Qt::Key_End:
        at = last;
        break;
    case Qt::Key_Left:
        at = at == 0 ? last : at - 1;
        break;
    default:
        at = at == last ? 0 : at + 1;
    }
    buttons.at(at)->setFocus(Qt::TabFocusReason);
}

QSize ToolBar::sizeHint() const
{
    return QSize(fullWidth(), ToolBarButton::heightFor(this));
}

QSize ToolBar::minimumSizeHint() const
{
    return QSize(ToolBarButton::heightFor(this), ToolBarButton::heightFor(this));
}

bool ToolBar::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && m_layoutPending)
        layOut();
    return QWidget::event(event);
}

void ToolBar::resizeEvent(QResizeEvent *)
{
    layOut();
}

void ToolBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        for (const Item &item : std::as_const(m_items))
            item.width = -1;
        itemsChanged();
    }
    QWidget::changeEvent(event);
}

void ToolBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_items.isEmpty()) {
        const QRect room = rect().adjusted(separatorPixels, 0, -separatorPixels, 0);
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(room, int(Qt::AlignLeft) | int(Qt::AlignVCenter),
                         fontMetrics().elidedText(m_emptyText, Qt::ElideRight, room.width()));
    }
    int left = 0;
    for (qsizetype i = 0; i < m_items.size() && left < width(); ++i) {
        const Item &item = m_items.at(i);
        const bool between = i + 1 < m_items.size() && m_items.at(i + 1).button;
        if (item.separator && between)
            painter.fillRect(left + separatorPixels / 2, 5, 1, height() - 10,
                             FlatButtonPaint::tint(palette(), 0.2));
        left += widthOf(item);
    }
}
