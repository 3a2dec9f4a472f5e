#pragma once

#include <QList>
#include <QString>

/// What a page may do only if its user allows it.
enum class Permission {
    Place,
    Notifications,
    Camera,
    Microphone,
    Screen,
    Clipboard,
    Fonts,
    Pointer,
    Downloads,
    /// Opening an address of one kind ("tel:") in another program.
    Program,
};

/// In the order in which they are listed; without `Program`, of which there is one for each kind of
/// address.
QList<Permission> allPermissions();

/// In the user's words.
QString permissionText(Permission permission);

/// That of camera, microphone and screen those are in use, in the user's words; empty where none
/// is.
QString useText(const QList<Permission> &used);
