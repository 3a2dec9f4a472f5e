#pragma once

#include <QLocale>
#include <QString>

/// The language of the interface: the base name of a file in AppData/Languages.
QString languageName();
void setLanguageName(const QString &name);
/// The code ("de") of a language by its English name; empty where the name is none's.
QString languageCode(const QString &name);

/// How dates and numbers are written among texts of the interface: in its language, by the manners
/// of the desktop's country.
QLocale languageLocale();

/// The text under `key` of `section` in the current language's file, read anew at each call, or
/// `text` where the file has none. Callers pass what the control shows now.
QString languageText(const QString &section, const QString &key, const QString &text);
