#pragma once

class QWebEngineProfile;

/// What pages hand over as files goes to the user's download folder under a free name, which no
/// server, page or address chooses without `FileName`.
namespace Downloads {
void install(QWebEngineProfile *profile);
}
