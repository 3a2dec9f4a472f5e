#pragma once

class QWebEngineProfile;

/// What pages hand over as files goes to the user's download folder under a free name.
namespace Downloads {
void install(QWebEngineProfile *profile);
}
