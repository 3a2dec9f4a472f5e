#pragma once

#include <QObject>

class AddressBox;

/// Whether the user works in the frame's address bar: the flag by which the Edit menu tells the
/// page from the address bar. An open menu leaves it as it is.
class AddressFocus : public QObject {
    Q_OBJECT

public:
    /// Goes with the bar.
    explicit AddressFocus(AddressBox &bar);

    bool isSet() const { return m_set; }
    /// True when the bar is its window's active control; also in a window that is not active.
    bool isActiveControl() const;
    AddressBox &bar() const { return m_bar; }

private:
    AddressBox &m_bar;
    bool m_set = false;
};
