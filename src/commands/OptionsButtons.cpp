#include "OptionsButtons.h"

#include "Texts.h"

#include <QDialogButtonBox>
#include <QPushButton>

namespace {

const QPushButton *addButton(QDialogButtonBox &box, const Text &caption,
                             QDialogButtonBox::ButtonRole role)
{
    QPushButton *button = box.addButton(caption(), role);
    button->setObjectName(caption.name());
    return button;
}

}

OptionsButtons::OptionsButtons(const Text &applyCaption, const Text &cancelCaption,
                               const Text &saveCaption)
    : box(new QDialogButtonBox)
    , apply(addButton(*box, applyCaption, QDialogButtonBox::ApplyRole))
    , cancel(addButton(*box, cancelCaption, QDialogButtonBox::RejectRole))
    , save(addButton(*box, saveCaption, QDialogButtonBox::YesRole))
{
}
