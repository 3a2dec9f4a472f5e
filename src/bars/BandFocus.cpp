#include "BandFocus.h"

#include "CoolBand.h"
#include "CoolBar.h"

#include <QApplication>
#include <QShortcut>

namespace {

bool holds(const QWidget *place, const QWidget *focus)
{
    return place && focus && (place == focus || place->isAncestorOf(focus));
}

/// The first widget of `place` that the Tab key would stop at; null when there is none.
QWidget *firstStop(QWidget *place)
{
    if (!place || !place->isVisible())
        return nullptr;
    QWidget *each = place;
    do {
        const bool stops = (each->focusPolicy() & Qt::TabFocus) && !each->focusProxy();
        if (stops && holds(place, each) && each->isVisible() && each->isEnabled())
            return each;
        each = each->nextInFocusChain();
    } while (each != place);
    return nullptr;
}

}

BandFocus::BandFocus(QWidget &window, CoolBar &bar, const QList<QWidget *> &others,
                     const Page &page)
    : QObject(&window)
    , m_bar(bar)
    , m_others(others)
    , m_page(page)
{
    const auto add = [this, &window](const char *key, int by) {
        auto *shortcut = new QShortcut(QKeySequence(QLatin1StringView(key)), &window);
        connect(shortcut, &QShortcut::activated, this, [this, by] { moveOn(by); });
    };
    add(nextKey, 1);
    add(previousKey, -1);
}

QList<QWidget *> BandFocus::places() const
{
    QList<QWidget *> places;
    for (int position = 1; position <= m_bar.bandCount(); ++position)
        places.append(m_bar.band(position)->child());
    return places + m_others + QList<QWidget *>{m_page.question()};
}

int BandFocus::placeOf(const QWidget *focus) const
{
    const QList<QWidget *> all = places();
    for (int i = 0; i < int(all.size()); ++i) {
        if (holds(all.at(i), focus))
            return i;
        // A gripper or a chevron belongs to its band.
        const CoolBand *band = m_bar.band(i + 1);
        if (band && focus && focus->parentWidget() == &m_bar
            && band->geometry().contains(focus->geometry().center()))
            return i;
    }
    return -1;
}

// The page stands at -1: behind the last place and before the first.
void BandFocus::moveOn(int by)
{
    const QList<QWidget *> all = places();
    const int count = int(all.size());
    int at = placeOf(QApplication::focusWidget());
    for (int tries = 0; tries <= count; ++tries) {
        at = (at + 1 + by + count + 1) % (count + 1) - 1;
        if (at < 0) {
            if (m_page.focus())
                return;
        } else if (QWidget *stop = firstStop(all.at(at))) {
            stop->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}
