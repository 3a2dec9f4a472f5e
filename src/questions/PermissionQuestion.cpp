#include "PermissionQuestion.h"

#include "Texts.h"

namespace {
constexpr Texts<"Permissions"> texts;

QString wordsFor(Permission permission)
{
    switch (permission) {
    case Permission::Place:
        return texts.at<"strAskPlace", "This site wants to know where you are. Do you allow it?">();
    case Permission::Notifications:
        return texts.at<"strAskNotifications",
                        "This site wants to show you notifications on the "
                        "desktop. Do you allow it?">();
    case Permission::Camera:
        return texts.at<"strAskCamera", "This site wants to use your camera. Do you allow it?">();
    case Permission::Microphone:
        return texts
            .at<"strAskMicrophone", "This site wants to use your microphone. Do you allow it?">();
    case Permission::Screen:
        return texts.at<"strAskScreen",
                        "This page, or something shown in it, wants to see what is "
                        "on your screen, other programs included. Do you allow "
                        "it?">();
    case Permission::Clipboard:
        return texts.at<"strAskClipboard",
                        "This site wants to read what you copied to the "
                        "clipboard. Do you allow it?">();
    case Permission::Fonts:
        return texts.at<"strAskFonts",
                        "This site wants to know which fonts are on this computer. "
                        "Do you allow it?">();
    case Permission::Pointer:
        return texts.at<"strAskPointer",
                        "This page, or something shown in it, wants to hide the "
                        "mouse pointer and follow it. The key Esc brings it back. "
                        "Do you allow it?">();
    case Permission::Downloads:
    case Permission::Program:
        break;
    }
    return {};
}
}

PageQuestion permissionQuestion(const QList<Permission> &permissions)
{
    PageQuestion question;
    question.text = permissions.size() > 1
        ? texts.at<"strAskBoth",
                   "This site wants to use your camera and your microphone. Do you "
                   "allow it?">()
        : wordsFor(permissions.first());
    question.yes = texts.at<"cmdAllow", "Allow">();
    question.no = texts.at<"cmdRefuse", "Refuse">();
    return question;
}
