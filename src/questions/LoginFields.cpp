#include "LoginFields.h"

#include "Language.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

LoginFields::LoginFields(const QString &user, QWidget *parent)
    : QWidget(parent)
    , m_user(new QLineEdit(user, this))
    , m_password(new QLineEdit(this))
{
    setObjectName("LoginFields"_L1);
    auto *form = new QFormLayout(this);
    form->setContentsMargins({});
    const auto addRow = [form](QLineEdit *field, const QString &name, const QString &english) {
        field->setObjectName(name);
        form->addRow(languageText(u"LoginDialog"_s, name, english), field);
        QString plain = qobject_cast<QLabel *>(form->labelForField(field))->text();
        field->setAccessibleName(plain.remove(u'&').remove(u':'));
    };
    addRow(m_user, u"txtUser"_s, u"&User name:"_s);
    addRow(m_password, u"txtPassword"_s, u"&Password:"_s);
    m_password->setEchoMode(QLineEdit::Password);
    setFocusProxy(user.isEmpty() ? m_user : m_password);
}

QString LoginFields::user() const
{
    return m_user->text();
}

QString LoginFields::password() const
{
    return m_password->text();
}
