#pragma once

#include <QDialog>

class Frame;
class QLineEdit;

/// The small dialog in which an address to open is typed. What is typed is handed on as it stands.
class OpenAddressDialog : public QDialog {
    Q_OBJECT

public:
    explicit OpenAddressDialog(Frame &frame);

private:
    void openAddress();

    Frame &m_frame;
    QLineEdit *m_address;
};
