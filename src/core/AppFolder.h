#pragma once

#include <QString>

/// The application folder and the files in it. Nothing outside it is read or written but the
/// user's favorites, the engine's own data and the place where starts find the program that runs.
namespace AppFolder {
/// Finds and makes it, as `InstalledFolder` says; before anything asks for it. Where it cannot be
/// made, what ships is used in its place, and nothing can be kept. Until then it is the
/// executable's folder.
void begin();
/// The same for who only reads: nothing is made, and what ships is used until there is a folder.
void look();
/// Without a trailing slash.
QString path();
/// For a test, in place of all.
void setPath(const QString &folder);
/// The folder of the executable, and of programs that come beside it.
QString program();
/// Sixteen letters that stand for the folder, however it is reached: what is kept of it elsewhere
/// is named by them.
QString mark();
/// `name` in the folder AppData.
QString appData(const QString &name);
/// Settings.ini: fixed by the start-up routine, empty before.
QString settingsPath();
void setSettingsPath(const QString &file);
}
