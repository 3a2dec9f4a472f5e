#pragma once

#include <QByteArray>
#include <QString>

/// Copies of edited source that was closed without being saved.
namespace RecoveredText {
/// AppData/Recovered in the application folder.
QString folder();
/// Writes a copy and returns its file; empty when that fails. The oldest copies make room for
/// new ones.
QString keep(const QByteArray &bytes);
}
