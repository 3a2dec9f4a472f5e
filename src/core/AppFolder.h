#pragma once

#include <QString>

/// The program's own folder and the files in it. Nothing outside it is read or written but the
/// user's favorites, the engine's own data and the place where starts find the program that runs.
namespace AppFolder {
/// Without a trailing slash; the executable's folder unless a test set another.
QString path();
void setPath(const QString &folder);
/// Sixteen letters that stand for the folder, however it is reached: what is kept of it elsewhere
/// is named by them.
QString mark();
/// `name` in the folder AppData.
QString appData(const QString &name);
/// Settings.ini: fixed by the start-up routine, empty before.
QString settingsPath();
void setSettingsPath(const QString &file);
}
