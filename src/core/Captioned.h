#pragma once

#include "Texts.h"

#include <QDialogButtonBox>
#include <QPushButton>

/// Controls that show a text and are named as it.
template <typename Control> Control *captioned(const Text &caption, QWidget *parent = nullptr)
{
    auto *control = new Control(caption(), parent);
    control->setObjectName(caption.name());
    return control;
}

/// For forms that translate all of their controls when they are loaded.
template <typename Control> Control *captionedInEnglish(const Text &caption)
{
    auto *control = new Control(caption.inEnglish());
    control->setObjectName(caption.name());
    return control;
}

inline QPushButton *addCaptioned(QDialogButtonBox &box, const Text &caption,
                                 QDialogButtonBox::ButtonRole role)
{
    QPushButton *button = box.addButton(caption(), role);
    button->setObjectName(caption.name());
    return button;
}
