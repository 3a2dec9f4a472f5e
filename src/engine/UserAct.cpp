#include "UserAct.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <chrono>
#include <utility>

namespace {
/// As long as a page's own right to act for the user lasts after a click.
constexpr std::chrono::seconds counts(5);
}

bool UserAct::isOne(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonRelease: {
        const Qt::MouseButton button = static_cast<const QMouseEvent &>(event).button();
        return button == Qt::LeftButton || button == Qt::MiddleButton;
    }
    case QEvent::KeyPress: {
        const int key = static_cast<const QKeyEvent &>(event).key();
        return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    }
    case QEvent::TouchEnd:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

void UserAct::note(const QEvent &event)
{
    if (isOne(event))
        m_counts.setRemainingTime(counts);
}

bool UserAct::take()
{
    return !std::exchange(m_counts, QDeadlineTimer(0)).hasExpired();
}
