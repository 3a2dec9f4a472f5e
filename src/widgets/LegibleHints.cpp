#include "LegibleHints.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QTimer>
#include <QWidget>

namespace {
constexpr float hintStrength = 0.7F;
/// Of 255 grey levels.
constexpr int leastDifference = 80;

bool isLegible(const QPalette &palette)
{
    const QColor hint = palette.color(QPalette::PlaceholderText);
    const int ground = qGray(palette.color(QPalette::Base).rgb());
    const int difference = qAbs(qGray(hint.rgb()) - ground);
    return difference * double(hint.alphaF()) >= leastDifference;
}
}

LegibleHints::LegibleHints(QWidget &window)
    : QObject(&window)
{
    window.installEventFilter(this);
    mend();
}

bool LegibleHints::eventFilter(QObject *, QEvent *event)
{
    // The change is still going round.
    if (event->type() == QEvent::PaletteChange)
        QTimer::singleShot(0, this, &LegibleHints::mend);
    return false;
}

void LegibleHints::mend()
{
    // All else goes on following the desktop.
    QPalette palette = QApplication::palette();
    if (isLegible(palette))
        return;
    QColor hint = palette.color(QPalette::Text);
    hint.setAlphaF(hintStrength);
    palette.setColor(QPalette::PlaceholderText, hint);
    QApplication::setPalette(palette);
}
