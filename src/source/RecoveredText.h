#pragma once

#include "WriteResult.h"

#include <QString>

class SourceFile;

/// Copies of edited source that was closed without being saved.
namespace RecoveredText {
/// AppData/Recovered in the application folder.
QString folder();
/// Writes a copy; `file` gets its path. The oldest copies make room for new ones.
WriteResult keep(const SourceFile &source, QString *file = nullptr);
}
