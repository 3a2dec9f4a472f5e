#pragma once

#include "Desk.h"
#include "WriteResult.h"

#include <QByteArray>
#include <QString>
#include <optional>

/// Profiles with windows: files that begin with all that a profile has, byte for byte, so that who
/// knows only profiles reads them. Behind it stands a section WindowN for the window of the key
/// URLN (Left, Top, Width and Height in twips; State: 0 normal, 1 minimized, 2 maximized; Order;
/// ScrollX, ScrollY; Zoom; Title; Muted), and a section Frame (the place; Maximized; Active, the
/// number of the active window). Numbers are written the same whatever the language is.
namespace DeskFile {
/// The bytes of the file: UTF-8, lines ended by CR LF. What a line cannot hold becomes a blank.
QByteArray text(const Desk &desk);

/// What stands in the bytes, in one pass over them, with names, values and encodings as `readIni`
/// has them. It may be a plain profile, and nothing of it is trusted: windows are those that
/// `UrlProfile::addresses` gives, numbers lie within bounds that the program can work with, orders
/// and the active window are sound. Of addresses of windows with a section the whole is read.
Desk read(QByteArrayView bytes);

/// The same of a file; nothing when it is missing or cannot be read.
std::optional<Desk> load(const QString &path);

/// Replaces the file in one step, as `UrlProfile::save` does.
WriteResult save(const QString &path, const Desk &desk);
}
