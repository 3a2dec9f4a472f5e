#include "LoginFields.h"

#include "Captioned.h"
#include "Texts.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"LoginDialog"> texts;
}

LoginFields::LoginFields(const QString &user, bool offersKeeping, QWidget *parent)
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
    if (!offersKeeping)
        return;
    m_keep = captioned<QCheckBox>(texts.at<"chkKeep", "&Keep in the desktop's keyring">, this);
    form->addRow(m_keep);
    connect(m_keep, &QCheckBox::clicked, this, [this] { m_isTicked = true; });
}

bool LoginFields::isToBeKept() const
{
    return m_keep && m_keep->isChecked();
}

void LoginFields::fillIn(const QString &user, const QString &password)
{
    noteKept();
    if (m_user->isModified() || m_password->isModified() || !m_password->text().isEmpty())
        return;
    m_user->setText(user);
    m_password->setText(password);
}

void LoginFields::noteKept()
{
    m_wasKept = true;
    if (m_keep && !m_isTicked)
        m_keep->setChecked(true);
}

QString LoginFields::user() const
{
    return m_user->text();
}

QString LoginFields::password() const
{
    return m_password->text();
}
