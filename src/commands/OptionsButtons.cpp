#include "OptionsButtons.h"

#include "Captioned.h"

#include <QDialogButtonBox>

OptionsButtons::OptionsButtons(const Text &applyCaption, const Text &cancelCaption,
                               const Text &saveCaption)
    : box(new QDialogButtonBox)
    , apply(addCaptioned(*box, applyCaption, QDialogButtonBox::ApplyRole))
    , cancel(addCaptioned(*box, cancelCaption, QDialogButtonBox::RejectRole))
    , save(addCaptioned(*box, saveCaption, QDialogButtonBox::YesRole))
{
}
