#include "BandGrip.h"

#include "BandGripAccessible.h"
#include "BandMoves.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "FlatButtonPaint.h"
#include "Texts.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {
constexpr int stepPixels = 15; // of the left edge, at each press of a key
constexpr Texts<"CoolBar"> texts;
}

BandGrip::BandGrip(CoolBar &bar, CoolBand &band)
    : QWidget(&bar)
    , m_bar(bar)
    , m_band(band)
{
    installBandGripAccessible();
    setObjectName("grip"_L1 + band.key());
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    translate();
}

void BandGrip::translate()
{
    const QString text = texts.at<"strMove", "Move %1">();
    setAccessibleName(text.contains("%1"_L1) ? text.arg(m_band.name()) : m_band.name());
}

QString BandGrip::placeText() const
{
    const QList<BandMoves::Row> rows = m_bar.rows();
    const BandMoves::Row row = BandMoves(m_bar).rowOf(&m_band);
    QString text = texts.at<"strPlace", "Row %1, place %2 of %3">();
    // A language file may leave some of them out.
    text.replace("%1"_L1, QString::number(rows.indexOf(row) + 1));
    text.replace("%2"_L1, QString::number(row.indexOf(&m_band) + 1));
    return text.replace("%3"_L1, QString::number(row.size()));
}

void BandGrip::act(int key, bool resize)
{
    using Direction = BandMoves::Direction;
    BandMoves moves(m_bar);
    const int left = m_band.geometry().left();
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const bool leftwards = key == Qt::Key_Left;
        if (resize)
            moves.placeLeftEdge(&m_band, left + (leftwards ? -stepPixels : stepPixels));
        else
            moves.step(&m_band, leftwards ? Direction::Left : Direction::Right);
        break;
    }
    case Qt::Key_Up:
        moves.step(&m_band, Direction::Up);
        break;
    case Qt::Key_Down:
        moves.step(&m_band, Direction::Down);
        break;
    default:
        m_bar.toggleMaximized(&m_band);
    }
    QAccessibleEvent event(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
}

void BandGrip::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeypadModifier;
    const bool shift = held == Qt::ShiftModifier;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (shift || held == Qt::NoModifier)
            return act(event->key(), shift);
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (held == Qt::NoModifier)
            return act(event->key());
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void BandGrip::paintEvent(QPaintEvent *)
{
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    FlatButtonPaint::background(painter, rect().adjusted(1, 2, 0, -2), palette(), false, false,
                                false, true);
}
