#pragma once

#include <QString>
#include <QWidget>

class QLineEdit;

/// Where the user name and the password of a site are entered.
class LoginFields : public QWidget {
    Q_OBJECT

public:
    LoginFields(const QString &user, QWidget *parent);

    QString user() const;
    QString password() const;

private:
    QLineEdit *m_user = nullptr;
    QLineEdit *m_password = nullptr;
};
