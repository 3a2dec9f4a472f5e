#pragma once

#include <QDialog>

class QLineEdit;

/// Asks for the user name and password of a site.
class LoginDialog : public QDialog {
    Q_OBJECT

public:
    LoginDialog(const QString &site, const QString &realm, QWidget *owner);

    QString user() const;
    QString password() const;

private:
    QLineEdit *m_user = nullptr;
    QLineEdit *m_password = nullptr;
};
