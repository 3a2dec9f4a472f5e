#include "LoginFields.h"

#include "Texts.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"LoginDialog"> texts;
}

LoginFields::LoginFields(const QString &user, QWidget *parent)
    : QWidget(parent)
    , m_user(new QLineEdit(user, this))
    , m_password(new QLineEdit(this))
{
    setObjectName("LoginFields"_L1);
    auto *form = new QFormLayout(this);
    form->setContentsMargins({});
    const auto addRow = [form](QLineEdit *field, const Text &caption) {
        field->setObjectName(caption.name());
        form->addRow(caption(), field);
        QString plain = qobject_cast<QLabel *>(form->labelForField(field))->text();
        field->setAccessibleName(plain.remove(u'&').remove(u':'));
    };
    addRow(m_user, texts.at<"txtUser", "&User name:">);
    addRow(m_password, texts.at<"txtPassword", "&Password:">);
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
