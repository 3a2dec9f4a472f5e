#include "ChevronButton.h"

#include "FlatButtonPaint.h"
#include "MenuText.h"
#include "Overflow.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace {
// Thousands of links in one menu take long to lay out, and nobody finds one among them.
constexpr qsizetype mostInOneMenu = 200;
constexpr qsizetype groupSize = 100;
constexpr qsizetype groupNameLength = 30;
}

ChevronButton::ChevronButton(QWidget *child, QWidget *parent)
    : QToolButton(parent)
    , m_child(child)
    , m_menu(new QMenu(this))
{
    setPopupMode(QToolButton::InstantPopup);
    setFocusPolicy(Qt::TabFocus);
    setMenu(m_menu);
    m_menu->setAttribute(Qt::WA_NoMouseReplay); // a second press closes, and opens nothing
    connect(m_menu, &QMenu::aboutToHide, this, [this] { setDown(false); });
    connect(m_menu, &QMenu::aboutToShow, this, &ChevronButton::fill);
}

void ChevronButton::fill()
{
    // Not earlier: an action of the last opening may still be running its handler.
    const QList<QAction *> old = m_menu->actions();
    for (QAction *action : old) {
        m_menu->removeAction(action);
        if (action->menu())
            action->menu()->deleteLater(); // and its action with it
        else
            action->deleteLater();
    }
    auto *overflow = dynamic_cast<Overflow *>(m_child);
    if (!overflow)
        return;
    const QStringList names = overflow->overflowNames();
    if (names.size() <= mostInOneMenu)
        return m_menu->addActions(overflow->overflowActions(m_menu));
    for (qsizetype first = 0; first < names.size(); first += groupSize) {
        const qsizetype count = std::min(groupSize, names.size() - first);
        addGroup(names.at(first), names.at(first + count - 1), first, count);
    }
}

// A submenu that is filled when it opens.
void ChevronButton::addGroup(const QString &from, const QString &to, qsizetype first,
                             qsizetype count)
{
    const QString dash = QStringLiteral(" \u2013 ");
    QMenu *group =
        m_menu->addMenu(menuText(from, groupNameLength) + dash + menuText(to, groupNameLength));
    connect(
        group, &QMenu::aboutToShow, this,
        [this, group, first, count] {
            if (auto *overflow = dynamic_cast<Overflow *>(m_child))
                group->addActions(overflow->overflowActions(group, first, count));
        },
        Qt::SingleShotConnection);
}

// Not QToolButton's own way, which would block in a loop of its own.
void ChevronButton::open()
{
    setDown(true);
    m_menu->popup(mapToGlobal(QPoint(0, height())));
}

// As the key does it: an action made active by itself would open its submenu at once.
void ChevronButton::selectFirst()
{
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QCoreApplication::sendEvent(m_menu, &down);
}

void ChevronButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        open();
}

void ChevronButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Down:
        open();
        selectFirst();
        return;
    default:
        QToolButton::keyPressEvent(event);
    }
}

void ChevronButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    FlatButtonPaint::background(painter, rect(), palette(), underMouse(), isDown(), false,
                                hasFocus());
    QPainterPath arrows;
    const QPointF middle = QRectF(rect()).center();
    for (const double x : {-4.5, 0.5}) {
        arrows.moveTo(middle + QPointF(x, -3.5));
        arrows.lineTo(middle + QPointF(x + 3.5, 0));
        arrows.lineTo(middle + QPointF(x, 3.5));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::ButtonText), 1.3));
    painter.drawPath(arrows);
}
