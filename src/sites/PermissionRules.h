#pragma once

#include "Permission.h"

#include <QUrl>

struct AskingSite;

/// What holds of requests for permissions before anybody is asked.
namespace PermissionRules {
/// Nobody can be asked for it, so it is refused: whoever asks has no name that could be told, comes
/// over the network in the clear, where he may be anybody, or asks for what a frame may not have.
bool isBarred(const QUrl &asker, const AskingSite &site, const QList<Permission> &permissions);
/// Camera, microphone and screen, which are in use from then on.
bool isCapture(Permission permission);
/// One answer of the user's is for all windows in which `site` waits for it: what is asked for is
/// known of the machine, not of a window, and any page of the site hands it on to the others.
bool isOneAnswer(const AskingSite &site, const QList<Permission> &permissions);
/// Names for an answer to `asker`, and for the question.
QString keyOf(const QUrl &asker, Permission permission);
QString kindOf(const QUrl &asker, const QList<Permission> &permissions);
}
