#pragma once

#include <QMap>
#include <QString>

/// Every text the program looks up: "section/key" and the English text beside the look-up.
using LanguageKeys = QMap<QString, QString>;

/// The look-ups in the sources below `folder`. They are found by their shapes: a direct call names
/// section and key; a file with a helper of its own, which names the section once, has pairs of a
/// key and an English text as arguments.
LanguageKeys languageKeysOf(const QString &folder);
