#include "LoginDialog.h"

#include "Language.h"
#include "ProgramInfo.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {
QString translated(const QString &key, const QString &text)
{
    return GetLanguageText(u"LoginDialog"_s, key, text);
}
}

LoginDialog::LoginDialog(const QString &site, const QString &realm, QWidget *owner)
    : QDialog(owner)
    , m_user(new QLineEdit(this))
    , m_password(new QLineEdit(this))
{
    setObjectName(u"LoginDialog"_s);
    setWindowTitle(ProgramInfo::title());
    m_user->setObjectName(u"txtUser"_s);
    m_password->setObjectName(u"txtPassword"_s);
    m_password->setEchoMode(QLineEdit::Password);

    const QString question = translated(u"strQuestion"_s, u"This site asks you to sign in:"_s);
    auto *label = new QLabel(
        question + u'\n' + site + (realm.isEmpty() ? QString() : u'\n' + realm.left(200)), this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *form = new QFormLayout(this);
    form->addRow(label);
    form->addRow(translated(u"txtUser"_s, u"&User name:"_s), m_user);
    form->addRow(translated(u"txtPassword"_s, u"&Password:"_s), m_password);
    form->addRow(buttons);
}

QString LoginDialog::user() const
{
    return m_user->text();
}

QString LoginDialog::password() const
{
    return m_password->text();
}
