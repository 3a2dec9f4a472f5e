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
};

/// In the order in which they are listed.
QList<Permission> allPermissions();

/// In the user's words.
QString permissionText(Permission permission);
