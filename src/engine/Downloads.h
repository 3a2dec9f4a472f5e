#pragma once

class QWebEngineDownloadRequest;
class QWebEngineProfile;

/// What pages hand over as files goes to the user's download folder under a free name, which no
/// server, page or address chooses without `FileName`.
namespace Downloads {
void install(QWebEngineProfile *profile);

/// The engine takes up a download whose connection broke. It tells of it with a request that must
/// not be asked for its page: that may be gone, and the program with it.
bool goesOn(const QWebEngineDownloadRequest &request);
}
