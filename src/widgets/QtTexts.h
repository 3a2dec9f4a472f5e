#pragma once

#include <QString>

/// The texts that Qt brings itself: standard buttons, the menus of text fields, its print and file
/// dialogs.
namespace QtTexts {
/// Puts them into `language`, the English name of a language, as far as this machine has Qt's
/// translations for it. English, or a name that is no language's, gives Qt's English texts.
void follow(const QString &language);
}
