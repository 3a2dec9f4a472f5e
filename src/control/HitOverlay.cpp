#include "HitOverlay.h"

#include <QEvent>
#include <QPainter>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// As the engine has them.
constexpr QColor hitColor(255, 255, 0, 110);
constexpr QColor currentColor(255, 130, 0, 140);
constexpr QColor barColor(190, 120, 0);
/// Pixels.
constexpr double markHeight = 2;
/// The scroll bar's buttons are above and below its track.
constexpr double buttonOfBar = 1;
}

HitOverlay::HitOverlay(QWidget *view)
    : QWidget(view)
{
    setObjectName("HitOverlay"_L1);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    view->installEventFilter(this);
    hide();
}

void HitOverlay::show(const Marks &marks)
{
    m_marks = marks;
    setGeometry(parentWidget()->rect());
    QWidget::show();
    raise();
    update();
}

/// The page's own widget may come anew, and then over this one.
bool HitOverlay::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ChildAdded && isVisible())
        raise();
    else if (event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void HitOverlay::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    for (const QRectF &hit : std::as_const(m_marks.hits))
        painter.fillRect(hit, hit == m_marks.current ? currentColor : hitColor);
    if (m_marks.barWidth <= 0)
        return;
    const double button = buttonOfBar * m_marks.barWidth;
    const double track = height() - 2 * button;
    for (const double place : std::as_const(m_marks.along))
        painter.fillRect(QRectF(width() - m_marks.barWidth, button + place * track,
                                m_marks.barWidth, markHeight),
                         barColor);
}
