#pragma once

#include <QStringList>

/// The languages there are: the names of the files in AppData/Languages without ".ini" (in any
/// letter case), by upper-cased name. Folders and hidden files are none.
QStringList languageFiles();
