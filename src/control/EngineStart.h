#pragma once

#include <QString>

/// The life of the page engine, in the order in which the program's main routine calls it.

/// Picks the software rendering backend on a machine without a graphics device, or where the user's
/// options say so, unless the environment names one; with that backend OpenGL is not loaded at all.
/// `devices` is the folder with the system's graphics devices. Must run before the application
/// object is made.
void chooseRenderingBackend(const QString &devices = QStringLiteral("/dev/dri"));

/// False, with one sentence for the user in `why`, when the engine could not start its sandbox:
/// the program must then end at once, because the engine itself would end it without a word.
bool sandboxUsable(QString *why);

/// Makes the standard error output quiet where the engine says things that concern nobody, and
/// prepares the resources of the engine. Cheap; after the application object is made.
void startEngine();

/// Makes the profile and one spare page whose process starts at once, so that the first window is
/// quick. Best called as soon as the frame is shown.
void warmUpEngine();

/// Ends the engine: remaining pages first, then the profile. Call it after the windows are gone
/// and before the application object goes.
void stopEngine();
