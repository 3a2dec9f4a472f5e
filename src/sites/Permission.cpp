#include "Permission.h"

#include "Texts.h"

#include <QStringList>

namespace {
constexpr Texts<"Permissions"> texts;
}

QList<Permission> allPermissions()
{
    QList<Permission> result;
    for (int each = 0; each <= int(Permission::Downloads); ++each)
        result.append(Permission(each));
    return result;
}

QString permissionText(Permission permission)
{
    switch (permission) {
    case Permission::Place:
        return texts.at<"strPlace", "Where you are">();
    case Permission::Notifications:
        return texts.at<"strNotifications", "Notifications">();
    case Permission::Camera:
        return texts.at<"strCamera", "Camera">();
    case Permission::Microphone:
        return texts.at<"strMicrophone", "Microphone">();
    case Permission::Screen:
        return texts.at<"strScreen", "Picture of the screen">();
    case Permission::Clipboard:
        return texts.at<"strClipboard", "Reading the clipboard">();
    case Permission::Fonts:
        return texts.at<"strFonts", "List of your fonts">();
    case Permission::Pointer:
        return texts.at<"strPointer", "Mouse pointer">();
    case Permission::Downloads:
        return texts.at<"strDownloads", "Many downloads">();
    case Permission::Program:
        return texts.at<"strProgram", "Other program">();
    }
    return {};
}

QString useText(const QList<Permission> &used)
{
    const bool camera = used.contains(Permission::Camera);
    const bool microphone = used.contains(Permission::Microphone);
    QStringList parts;
    if (camera && microphone)
        parts.append(texts.at<"strBothInUse", "Camera and microphone in use">());
    else if (camera)
        parts.append(texts.at<"strCameraInUse", "Camera in use">());
    else if (microphone)
        parts.append(texts.at<"strMicrophoneInUse", "Microphone in use">());
    if (used.contains(Permission::Screen))
        parts.append(texts.at<"strScreenInUse", "Screen being watched">());
    return parts.join(QLatin1String(", "));
}
