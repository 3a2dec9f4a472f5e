#include "TabStrip.h"

#include "DraggedUrls.h"
#include "TabButton.h"
#include "TabOrder.h"
#include "Texts.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QToolButton>
#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {
constexpr int spacing = 2;
constexpr int wheelStep = 120;
// A title may change a thousand times a second; tabs are placed anew at this pace at most.
constexpr std::chrono::milliseconds layoutPace(40);
}

TabStrip::TabStrip(const QIcon &image1, QWidget *parent)
    : QWidget(parent)
    , m_image1(image1)
    , m_viewport(new QWidget(this))
    , m_content(new QWidget(m_viewport))
    , m_left(new QToolButton(this))
    , m_right(new QToolButton(this))
{
    setObjectName(u"tbWindows"_s);
    setAccessibleName(u"Tabs"_s);
    setAcceptDrops(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    makeArrows();
    m_layoutTimer.setSingleShot(true);
    m_layoutTimer.setInterval(layoutPace);
    connect(&m_layoutTimer, &QTimer::timeout, this, &TabStrip::layOut);
}

void TabStrip::makeArrows()
{
    m_left->setArrowType(Qt::LeftArrow);
    m_left->setObjectName(u"tbWindowsLeft"_s);
    m_right->setArrowType(Qt::RightArrow);
    m_right->setObjectName(u"tbWindowsRight"_s);
    for (QToolButton *arrow : {m_left, m_right}) {
        arrow->setAutoRaise(true);
        arrow->setAutoRepeat(true);
        arrow->setFocusPolicy(Qt::NoFocus);
        arrow->hide();
    }
    connect(m_left, &QToolButton::clicked, this, [this] { scrollTabs(-1); });
    connect(m_right, &QToolButton::clicked, this, [this] { scrollTabs(1); });
}

/// Done as the arrows come up, so that they speak the language of that moment.
void TabStrip::nameArrows()
{
    constexpr Texts<"frmMain"> texts;
    m_left->setToolTip(texts.at<"strScrollTabsLeft", "Scroll tabs left">());
    m_right->setToolTip(texts.at<"strScrollTabsRight", "Scroll tabs right">());
    for (QToolButton *arrow : {m_left, m_right})
        arrow->setAccessibleName(arrow->toolTip());
}

void TabStrip::addTab(const QString &key, const QString &caption)
{
    if (m_tabs.contains(key)) {
        setCaption(key, caption);
        return;
    }
    auto *tab = new TabButton(key, caption, m_content);
    // Made late, it stands last in its window's Tab order.
    putInTabOrder(m_order.isEmpty() ? m_content : static_cast<QWidget *>(m_order.last()), tab);
    tab->setIcon(m_image1);
    const int left = m_order.isEmpty() ? 0 : m_order.last()->geometry().right() + 1 + spacing;
    tab->setGeometry(left, 0, tab->sizeHint().width(), std::max(height(), 1));
    m_tabs.insert(key, tab);
    m_order.append(tab);
    connectTab(tab);
    m_content->resize(tab->geometry().right() + 1, std::max(height(), 1));
    placeViewport();
    tab->show();
    updateFocusStop();
    updateGeometry();
}

void TabStrip::connectTab(TabButton *tab)
{
    connect(tab, &TabButton::clicked, this, [this, tab] {
        const QString key = tab->key();
        setPressed(key, true);
        emit tabClicked(key);
    });
    connect(tab, &TabButton::middleClicked, this,
            [this, tab] { emit tabMiddleClicked(tab->key()); });
    connect(tab, &TabButton::useClicked, this, [this, tab] { emit useClicked(tab->key()); });
    connect(tab, &TabButton::soundClicked, this, [this, tab] { emit soundClicked(tab->key()); });
    connect(tab, &TabButton::stepWanted, this,
            [this, tab](int step) { focusNeighbour(tab, step); });
    connect(tab, &TabButton::dragged, this, [this, tab](int x) { drag(tab, x); });
    connect(tab, &TabButton::dragEnded, this,
            [this, tab](bool isDropped) { endDrag(tab, isDropped); });
    connect(tab, &TabButton::moveWanted, this, [this, tab](int step) {
        if (moveTab(tab, m_order.indexOf(tab) + step))
            emit tabMoved();
    });
    connect(tab, &TabButton::focused, this, [this, tab] { ensureVisible(tab); });
}

void TabStrip::removeTab(const QString &key)
{
    TabButton *tab = m_tabs.take(key);
    if (!tab)
        return;
    const qsizetype index = m_order.indexOf(tab);
    m_draggedFrom = -1;
    const bool hadFocus = tab->hasFocus();
    m_order.removeAt(index);
    if (m_pressed == tab)
        m_pressed = nullptr;
    if (m_focusStop == tab)
        m_focusStop = nullptr;
    updateFocusStop();
    if (hadFocus && !m_order.isEmpty())
        moveFocusTo(m_order.at(std::min(index, m_order.size() - 1)));
    tab->hide();
    tab->disconnect(this);
    tab->setParent(nullptr);
    // The tab may be what is being clicked.
    tab->deleteLater();
    layOut();
}

void TabStrip::setCaption(const QString &key, const QString &caption)
{
    TabButton *tab = button(key);
    if (tab && tab->setCaption(caption))
        scheduleLayout();
}

void TabStrip::setToolTip(const QString &key, const QString &text)
{
    TabButton *tab = button(key);
    if (!tab || tab->toolTip() == text)
        return;
    tab->QWidget::setToolTip(text);
    tab->setAccessibleDescription(text);
}

void TabStrip::setIcon(const QString &key, const QIcon &icon)
{
    if (TabButton *tab = button(key))
        tab->setIcon(icon.isNull() ? m_image1 : icon);
}

void TabStrip::setUse(const QString &key, const QString &text)
{
    if (TabButton *tab = button(key))
        tab->setUse(text);
}

void TabStrip::setSound(const QString &key, PageSound sound)
{
    if (TabButton *tab = button(key))
        tab->setSound(sound);
}

void TabStrip::setAsleep(const QString &key, bool asleep)
{
    if (TabButton *tab = button(key))
        tab->setAsleep(asleep);
}

void TabStrip::setPrivate(const QString &key)
{
    if (TabButton *tab = button(key)) {
        tab->setPrivate();
        scheduleLayout();
    }
}

void TabStrip::setPressed(const QString &key, bool pressed)
{
    TabButton *tab = button(key);
    if (!tab)
        return;
    if (!pressed) {
        tab->setPressed(false);
        if (m_pressed == tab)
            m_pressed = nullptr;
        return;
    }
    if (m_pressed && m_pressed != tab)
        m_pressed->setPressed(false);
    m_pressed = tab;
    tab->setPressed(true);
    updateFocusStop();
    ensureVisible(tab);
}

bool TabStrip::isPressed(const QString &key) const
{
    const TabButton *tab = button(key);
    return tab && tab->isPressed();
}

QStringList TabStrip::keys() const
{
    QStringList result;
    for (const TabButton *tab : m_order)
        result.append(tab->key());
    return result;
}

QString TabStrip::caption(const QString &key) const
{
    const TabButton *tab = button(key);
    return tab ? tab->caption() : QString();
}

QWidget *TabStrip::tab(const QString &key) const
{
    return button(key);
}

TabButton *TabStrip::button(const QString &key) const
{
    return m_tabs.value(key);
}

/// One tab only is a stop of the Tab key: the pressed one, or the first.
void TabStrip::updateFocusStop()
{
    TabButton *stop = m_pressed;
    if (!stop && !m_order.isEmpty())
        stop = m_order.first();
    if (stop == m_focusStop)
        return;
    if (m_focusStop)
        m_focusStop->setFocusPolicy(Qt::NoFocus);
    m_focusStop = stop;
    if (stop)
        stop->setFocusPolicy(Qt::TabFocus);
}

void TabStrip::moveFocusTo(TabButton *tab)
{
    tab->setFocus(Qt::OtherFocusReason);
    ensureVisible(tab);
}

void TabStrip::focusNeighbour(TabButton *from, int step)
{
    const qsizetype last = m_order.size() - 1;
    const qsizetype wanted = m_order.indexOf(from) + step;
    moveFocusTo(m_order.at(std::clamp(wanted, qsizetype(0), last)));
}

QSize TabStrip::sizeHint() const
{
    return {std::max(m_content->width(), 200), minimumSizeHint().height()};
}

QSize TabStrip::minimumSizeHint() const
{
    return {100, std::max(16, fontMetrics().height()) + 10};
}

void TabStrip::scheduleLayout()
{
    if (!m_layoutTimer.isActive())
        m_layoutTimer.start();
}

void TabStrip::layOut()
{
    const bool follow = m_pressed && isInView(m_pressed);
    int left = 0;
    for (TabButton *tab : std::as_const(m_order)) {
        const QRect place(left, 0, tab->sizeHint().width(), height());
        tab->setGeometry(place);
        left = place.right() + 1 + spacing;
    }
    m_content->resize(std::max(left - spacing, 0), height());
    placeViewport();
    if (follow)
        ensureVisible(m_pressed);
    updateGeometry();
}

/// Shows the arrows when the tabs do not fit, and gives the tabs what is left.
void TabStrip::placeViewport()
{
    const bool overflow = m_content->width() > width();
    const int arrow = overflow ? std::min(20, width() / 4) : 0;
    if (overflow && m_left->isHidden())
        nameArrows();
    m_left->setVisible(overflow);
    m_right->setVisible(overflow);
    m_viewport->setGeometry(0, 0, width() - 2 * arrow, height());
    m_left->setGeometry(width() - 2 * arrow, 0, arrow, height());
    m_right->setGeometry(width() - arrow, 0, arrow, height());
    scrollTo(m_offset);
}

int TabStrip::scrollRange() const
{
    return std::max(m_content->width() - m_viewport->width(), 0);
}

void TabStrip::scrollTo(int offset)
{
    m_offset = std::clamp(offset, 0, scrollRange());
    m_content->move(-m_offset, 0);
    m_left->setEnabled(m_offset > 0);
    m_right->setEnabled(m_offset < scrollRange());
}

/// Scrolls by whole tabs, to the edge of the next one hidden on that side.
void TabStrip::scrollTabs(int count)
{
    if (m_order.isEmpty())
        return;
    const int tab = m_order.first()->width() + spacing;
    scrollTo(m_offset + count * tab);
}

bool TabStrip::isInView(const TabButton *tab) const
{
    return tab->x() >= m_offset
        && tab->geometry().right() < m_offset + std::max(m_viewport->width(), 1);
}

void TabStrip::ensureVisible(const TabButton *tab)
{
    if (tab->geometry().right() >= m_offset + m_viewport->width())
        scrollTo(tab->geometry().right() + 1 - m_viewport->width());
    if (tab->x() < m_offset)
        scrollTo(tab->x());
}

void TabStrip::resizeEvent(QResizeEvent *)
{
    if (m_content->height() != height())
        layOut();
    placeViewport();
    if (m_pressed)
        ensureVisible(m_pressed);
}

void TabStrip::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        scheduleLayout();
}

/// Refused here, a drag is offered to the frame, whose profile files are.
void TabStrip::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedAddresses(*event).isEmpty())
        acceptAsCopy(*event);
}

void TabStrip::dropEvent(QDropEvent *event)
{
    acceptAsCopy(*event);
    emit addressesDropped(draggedAddresses(*event));
}

void TabStrip::wheelEvent(QWheelEvent *event)
{
    const QPoint turned = event->angleDelta();
    m_wheelRest += turned.y() != 0 ? turned.y() : turned.x();
    const int steps = m_wheelRest / wheelStep;
    m_wheelRest -= steps * wheelStep;
    if (steps != 0)
        scrollTabs(-steps);
    event->accept();
}

void TabStrip::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton && rect().contains(event->position().toPoint()))
        emit rightReleased(event->globalPosition().toPoint());
}

/// Keeps menus of the widgets around from opening here on the right button.
void TabStrip::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() == QContextMenuEvent::Keyboard)
        emit rightReleased(event->globalPos());
    event->accept();
}
