#include "SteadySight.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace {
/// Milliseconds.
constexpr int leastTime = 500;

QRect globalPlace(const QWidget &widget)
{
    return {widget.mapToGlobal(QPoint()), widget.size()};
}

/// Another window of the program that is known to be below, or unknown to be above.
bool isElsewhere(const QWidget &other, const QWidget &window)
{
    for (const QWidget *owner = &other; owner; owner = owner->parentWidget()) {
        if (owner == &window)
            return false;
    }
    return other.windowType() == Qt::Window && window.isActiveWindow();
}
}

SteadySight::SteadySight(QWidget *watched, const Vital &vital)
    : QObject(watched)
    , m_watched(watched)
    , m_vital(vital)
{
    m_clock.setSingleShot(true);
    // A coarse one may end early.
    m_clock.setTimerType(Qt::PreciseTimer);
    connect(&m_clock, &QTimer::timeout, this, &SteadySight::end);
    watched->installEventFilter(this);
}

bool SteadySight::isOver()
{
    look();
    return m_isOver;
}

bool SteadySight::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_watched && event->type() == QEvent::Show) {
        qApp->installEventFilter(this);
        begin();
    } else if (object == m_watched && event->type() == QEvent::Hide) {
        qApp->removeEventFilter(this);
        m_clock.stop();
        m_inSight = false;
    } else if (event->type() == QEvent::WindowActivate && object == m_watched->window()) {
        begin();
    } else if (concerns(object, *event)) {
        look();
    }
    return false;
}

bool SteadySight::concerns(QObject *object, const QEvent &event) const
{
    switch (event.type()) {
    case QEvent::Expose:
        return object == m_watched->window()->windowHandle();
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ZOrderChange:
    case QEvent::ParentChange:
    case QEvent::WindowStateChange: {
        const auto *widget = qobject_cast<const QWidget *>(object);
        if (!widget || !m_watched->isVisible())
            return false;
        const QWidget *parent = widget->parentWidget();
        return widget->isWindow() || widget == m_watched
            || (parent && parent->isAncestorOf(m_watched));
    }
    default:
        return false;
    }
}

void SteadySight::look()
{
    const bool inSight = isInSight();
    if (!inSight || !m_inSight || place() != m_place)
        begin();
}

void SteadySight::begin()
{
    m_inSight = isInSight();
    m_place = place();
    m_clock.start(std::max(leastTime, QApplication::doubleClickInterval()));
    if (std::exchange(m_isOver, false))
        emit changed(false);
}

void SteadySight::end()
{
    if (!isInSight() || !m_inSight || place() != m_place) {
        begin();
        return;
    }
    m_isOver = true;
    emit changed(true);
}

bool SteadySight::isInSight() const
{
    const QWidget *window = m_watched->window();
    return m_watched->isVisible() && !window->isMinimized() && window->windowHandle()
        && window->windowHandle()->isExposed() && m_vital().subtracted(m_watched->rect()).isEmpty()
        && !isCoveredInside() && !isCoveredByWindow();
}

/// By what stands beside it or one of the widgets around it, or cut off by one of these.
bool SteadySight::isCoveredInside() const
{
    for (const QWidget *each = m_watched; !each->isWindow(); each = each->parentWidget()) {
        const QWidget *parent = each->parentWidget();
        const QRect place(m_watched->mapTo(parent, QPoint()), m_watched->size());
        if (!m_vital().translated(place.topLeft()).subtracted(parent->rect()).isEmpty())
            return true;
        const QObjectList &siblings = parent->children();
        // One that is being deleted is none of them any more.
        for (qsizetype at = siblings.size() - 1; at >= 0 && siblings.at(at) != each; --at) {
            const auto *above = qobject_cast<const QWidget *>(siblings.at(at));
            if (above && !above->isWindow() && above->isVisible()
                && above->geometry().intersects(place))
                return true;
        }
    }
    return false;
}

bool SteadySight::isCoveredByWindow() const
{
    const QRect place = globalPlace(*m_watched);
    const QWidget &window = *m_watched->window();
    const QWidgetList all = QApplication::topLevelWidgets();
    return std::any_of(all.begin(), all.end(), [&](const QWidget *each) {
        return each != &window && each->isVisible() && !each->isMinimized()
            && each->frameGeometry().intersects(place) && !isElsewhere(*each, window);
    });
}

QRect SteadySight::place() const
{
    return globalPlace(*m_watched);
}
