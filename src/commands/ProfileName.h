#pragma once

#include <QString>

class QWidget;

/// A profile as its user knows it: the name of its file without folder and ending, as it may be put
/// beside the program's own words.
QString profileName(const QString &file);

/// A name as the text of an item of `menu`: no longer than others, every "&" for itself.
QString elidedProfileName(const QString &name, const QWidget &menu);
