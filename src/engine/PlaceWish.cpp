#include "PlaceWish.h"

#include "UserAct.h"

#include <QInputEvent>
#include <algorithm>
#include <chrono>
#include <utility>

namespace {
/// A server may take its time to answer; what a page begins by itself long after is its own affair.
constexpr std::chrono::minutes counts(2);

PlaceWish &ofGonePages()
{
    static PlaceWish wish;
    return wish;
}

bool hasShift(const QEvent &event)
{
    return event.isInputEvent()
        && static_cast<const QInputEvent &>(event).modifiers().testFlag(Qt::ShiftModifier);
}
}

PlaceWish::~PlaceWish()
{
    PlaceWish &gone = ofGonePages();
    if (this == &gone)
        return;
    if (!m_act.hasExpired())
        gone.m_act = m_act;
    gone.m_menu += m_menu;
}

void PlaceWish::noteEvent(const QEvent &event)
{
    if (UserAct::isOne(event))
        m_act = hasShift(event) ? QDeadlineTimer(counts) : QDeadlineTimer(0);
}

void PlaceWish::noteMenu(const QUrl &url)
{
    m_menu.append({url, QDeadlineTimer(counts)});
}

void PlaceWish::moveTo(PlaceWish &window)
{
    window.m_act = std::exchange(m_act, QDeadlineTimer(0));
}

bool PlaceWish::take(const QUrl &url)
{
    m_menu.removeIf([](const Menu &menu) { return menu.lasts.hasExpired(); });
    const auto menu = std::find_if(m_menu.cbegin(), m_menu.cend(),
                                   [&url](const Menu &each) { return each.url == url; });
    if (menu == m_menu.cend())
        return !std::exchange(m_act, QDeadlineTimer(0)).hasExpired();
    m_menu.erase(menu);
    return true;
}

bool PlaceWish::takeOfGone(const QUrl &url)
{
    return ofGonePages().take(url);
}
