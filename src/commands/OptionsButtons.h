#pragma once

class QDialogButtonBox;
class QPushButton;
class Text;

/// The three buttons under a dialog of options, named as their texts.
struct OptionsButtons {
    OptionsButtons(const Text &applyCaption, const Text &cancelCaption, const Text &saveCaption);

    /// Holds the buttons; the dialog puts it into its layout, which owns it then.
    QDialogButtonBox *box;
    const QPushButton *apply;
    const QPushButton *cancel;
    /// Has not the accepting role: the dialog closes itself once the options are applied.
    const QPushButton *save;
};
