#pragma once

#include <QComboBox>

class AddressEdit;
class AddressBox;

/// The combo box of an address bar: a field and a list that drops. It changes nothing by itself
/// but what the user chooses from the dropped list.
class AddressCombo : public QComboBox {
    Q_OBJECT

public:
    explicit AddressCombo(AddressBox &owner);

    AddressEdit *edit() const { return m_edit; }
    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void prepareList();
    bool popupKey(QKeyEvent *event);

    AddressBox &m_owner;
    AddressEdit *m_edit;
    /// What drops down; made at the first drop.
    QAbstractItemView *m_list = nullptr;
    bool m_dropping = false;
};
