#pragma once

#include <QString>

/// The language of the interface: the base name of a file in AppData/Languages.
QString languageName();
void setLanguageName(const QString &name);

/// The text under `key` of `section` in the current language's file, read anew at each call, or
/// `text` where the file has none. Callers pass what the control shows now.
QString languageText(const QString &section, const QString &key, const QString &text);
