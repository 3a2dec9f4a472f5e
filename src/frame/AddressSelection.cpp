#include "AddressSelection.h"

#include "AddressBox.h"

AddressSelection::AddressSelection(AddressBox &bar)
    : m_bar(bar)
    , m_isAll(bar.isAllSelected())
{
}

AddressSelection::~AddressSelection()
{
    if (m_isAll && !m_bar.isAllSelected())
        m_bar.selectAll();
}
