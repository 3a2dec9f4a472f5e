#include "AddressFocus.h"

#include "AddressBox.h"

AddressFocus::AddressFocus(AddressBox &bar)
    : QObject(&bar)
    , m_bar(bar)
{
    connect(&bar, &AddressBox::gotFocus, this, [this] { m_set = true; });
    connect(&bar, &AddressBox::lostFocus, this, [this] { m_set = false; });
}

bool AddressFocus::isActiveControl() const
{
    return m_set || m_bar.isAncestorOf(m_bar.window()->focusWidget());
}
