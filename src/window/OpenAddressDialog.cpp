#include "OpenAddressDialog.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "Captioned.h"
#include "Forms.h"
#include "Frame.h"
#include "MailProgram.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int comfortableWidth = 420;
constexpr Texts<"frmOpenURL"> texts;

}

OpenAddressDialog::OpenAddressDialog(Frame &frame)
    : QDialog(frame.window())
    , m_frame(frame)
    , m_address(new QLineEdit(u"http://"_s))
{
    setObjectName("frmOpenURL"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);

    auto *group = new QGroupBox;
    group->setObjectName("Frame1"_L1);
    auto *groupLayout = new QVBoxLayout(group);
    groupLayout->addWidget(m_address);
    m_address->setObjectName("txtOpenURL"_L1);
    m_address->setMinimumWidth(comfortableWidth);

    auto *buttons = new QDialogButtonBox;
    QPushButton *open =
        addCaptioned(*buttons, texts.at<"cmdOpenURL", "&Open">, QDialogButtonBox::ActionRole);
    QPushButton *cancel =
        addCaptioned(*buttons, texts.at<"cmdCancel", "&Cancel">, QDialogButtonBox::RejectRole);
    // The dialog's default button is what Enter in the field presses: once.
    open->setDefault(true);
    connect(open, &QPushButton::clicked, this, &OpenAddressDialog::openAddress);
    connect(cancel, &QPushButton::clicked, this, &QDialog::close);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(group);
    layout->addWidget(buttons);
    setWindowTitle(texts.at<"Caption", "Open URL">());
    m_address->setAccessibleName(windowTitle());
    m_address->setFocus();
    // A whole address can be put in at once; without a scheme it is opened as http all the same.
    m_address->selectAll();
}

void OpenAddressDialog::openAddress()
{
    const QString url = m_address->text();
    close();
    if (!openInMailProgram(url))
        m_frame.navigateActive(url);
}
