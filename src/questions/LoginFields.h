#pragma once

#include <QString>
#include <QWidget>

class QCheckBox;
class QLineEdit;

/// Where the user name and the password of a site are entered.
class LoginFields : public QWidget {
    Q_OBJECT

public:
    /// `offersKeeping`: with a box to tick for what is to be kept.
    LoginFields(const QString &user, bool offersKeeping, QWidget *parent);

    QString user() const;
    QString password() const;
    bool isToBeKept() const;
    bool wasKept() const { return m_wasKept; }
    /// That is kept: it is filled in where the user has not begun to enter anything.
    void fillIn(const QString &user, const QString &password);
    /// Something is kept.
    void noteKept();

private:
    QLineEdit *m_user = nullptr;
    QLineEdit *m_password = nullptr;
    /// Null where nothing is.
    QCheckBox *m_keep = nullptr;
    bool m_wasKept = false;
    bool m_isTicked = false;
};
