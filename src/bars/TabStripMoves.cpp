// The order of the tabs, as the user has it.
#include "TabButton.h"
#include "TabStrip.h"

#include <algorithm>

/// `to` may be beyond the ends. False: it stands there already.
bool TabStrip::moveTab(TabButton *tab, qsizetype to)
{
    const qsizetype from = m_order.indexOf(tab);
    const qsizetype place = std::clamp(to, qsizetype(0), m_order.size() - 1);
    if (from < 0 || place == from)
        return false;
    m_order.move(from, place);
    layOut();
    ensureVisible(tab);
    return true;
}

/// It changes places with its neighbours as the pointer passes the middle of each, so that tabs of
/// different widths do not go to and fro.
void TabStrip::drag(TabButton *tab, int x)
{
    qsizetype to = m_order.indexOf(tab);
    if (m_draggedFrom < 0)
        m_draggedFrom = to;
    const int pointer = tab->x() + x;
    const auto middle = [this](qsizetype index) {
        return m_order.at(index)->geometry().center().x();
    };
    while (to + 1 < m_order.size() && pointer > middle(to + 1))
        ++to;
    while (to > 0 && pointer < middle(to - 1))
        --to;
    moveTab(tab, to);
}

void TabStrip::endDrag(TabButton *tab, bool isDropped)
{
    const qsizetype from = std::exchange(m_draggedFrom, -1);
    // With another tab gone meanwhile, it has no place to go back to.
    if (!isDropped && from >= 0)
        moveTab(tab, from);
    else
        emit tabMoved();
}
