#pragma once

#include <QString>

class QDialogButtonBox;
class QPushButton;

/// The three buttons under a dialog of options, named as the language files name them.
struct OptionsButtons {
    /// The captions are as the user reads them, with the marks of their access keys.
    OptionsButtons(const QString &applyCaption, const QString &cancelCaption,
                   const QString &saveCaption);

    /// Holds the buttons; the dialog puts it into its layout, which owns it then.
    QDialogButtonBox *box;
    const QPushButton *apply;
    const QPushButton *cancel;
    /// Has not the accepting role: the dialog closes itself once the options are applied.
    const QPushButton *save;
};
