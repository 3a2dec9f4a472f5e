#include "OptionsButtons.h"

#include <QDialogButtonBox>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

const QPushButton *addButton(QDialogButtonBox &box, const QString &name, const QString &caption,
                             QDialogButtonBox::ButtonRole role)
{
    QPushButton *button = box.addButton(caption, role);
    button->setObjectName(name);
    return button;
}

}

OptionsButtons::OptionsButtons(const QString &applyCaption, const QString &cancelCaption,
                               const QString &saveCaption)
    : box(new QDialogButtonBox)
    , apply(addButton(*box, u"cmdApply"_s, applyCaption, QDialogButtonBox::ApplyRole))
    , cancel(addButton(*box, u"cmdCancel"_s, cancelCaption, QDialogButtonBox::RejectRole))
    , save(addButton(*box, u"cmdSave"_s, saveCaption, QDialogButtonBox::YesRole))
{
}
