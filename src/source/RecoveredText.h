#pragma once

#include <QString>

class SourceFile;

/// Copies of edited source that was closed without being saved.
namespace RecoveredText {
/// AppData/Recovered in the application folder.
QString folder();
/// Writes a copy and returns its file; empty when that fails. The oldest copies make room for
/// new ones.
QString keep(const SourceFile &source);
}
