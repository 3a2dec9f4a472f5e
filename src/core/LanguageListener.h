#pragma once

#include <QString>

/// Hears of every text that is looked up, whoever asks for it and wherever the key comes from: so
/// that a check of the language files cannot miss one. In the thread that asks.
using LanguageListener = void (*)(const QString &section, const QString &key);

/// Null for none, which there is at first.
void setLanguageListener(LanguageListener listener);
