#pragma once

#include <QDialog>

class Frame;
class QLineEdit;

/// The small dialog in which an address to open is typed. What is typed is handed on as it stands.
class frmOpenURL : public QDialog {
    Q_OBJECT

public:
    explicit frmOpenURL(Frame &frame);

private:
    void cmdOpenURL_Click();

    Frame &m_frame;
    QLineEdit *m_txtOpenURL;
};
