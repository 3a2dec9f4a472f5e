#pragma once

#include <QtGlobal>

class AddressBox;

/// While it lives, a page may put another text into the address bar. Where the user is in the field
/// and all of its text was selected, or there was none, all of the new text is selected in the end:
/// he has come to type an address, which is not to be joined to what arrived meanwhile.
class AddressSelection {
public:
    explicit AddressSelection(AddressBox &bar);
    ~AddressSelection();
    Q_DISABLE_COPY_MOVE(AddressSelection)

private:
    AddressBox &m_bar;
    bool m_isAll;
};
