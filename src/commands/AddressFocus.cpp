#include "AddressFocus.h"

#include "brwURL.h"

AddressFocus::AddressFocus(brwURL &bar)
    : QObject(&bar)
    , m_bar(bar)
{
    connect(&bar, &brwURL::gotFocus, this, [this] { m_set = true; });
    connect(&bar, &brwURL::lostFocus, this, [this] { m_set = false; });
}

bool AddressFocus::isActiveControl() const
{
    return m_set || m_bar.isAncestorOf(m_bar.window()->focusWidget());
}
