#pragma once

#include <QString>

class RichTextBox;

/// What assistive tools read of a RichTextBox, and how they edit it. Offsets count a line break as
/// one character.
namespace TextBoxAccessible {
void install();
/// Tells them that `removed` became `inserted`.
void changed(RichTextBox *box, qsizetype at, const QString &removed, const QString &inserted);
/// Tells them that the caret or the selection is another.
void moved(RichTextBox *box);
}
