#pragma once

class QWebEngineProfile;

/// What the list of downloads does with an entry that the user wants to be tried again: the engine
/// goes on with its own, a request of our own with what an earlier program left, and where nothing
/// can be continued a page begins anew.
namespace DownloadRetry {
/// While the profile is there. The list also gets to know by what it can be continued later.
void install(QWebEngineProfile *profile);
}
