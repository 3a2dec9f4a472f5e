#pragma once

#include "DownloadAsker.h"
#include "WebPage.h"

class QWebEngineDownloadRequest;

/// Where a download comes from.
struct DownloadSource {
    /// Null where it has gone, or cannot be told safely.
    WebPage *page = nullptr;
    PageOrigin origin;
    /// Who of the page.
    DownloadAsker asker;
    /// The address alone does not bring it.
    bool isAnswerToForm = false;
};

/// Which page a download comes from. The engine's own word for it ends the program where the page
/// has gone since, as the page of a window closes that was made for a file alone. So what the pages
/// ask for is noted, and whose the last request for an address was counts, or, of several pages
/// that are all there, the engine's word.
namespace DownloadPages {
/// `page` asks for `url`, as for a page, a frame or a file.
void note(WebPage &page, const QUrl &url, const DownloadAsker &asker);
/// A page is about to go.
void noteEnd(const WebPage &page);
/// Of a page that is there as it is by now, and of one that has gone as it was when it asked.
/// `privateSession` (`PrivateProfiles::numberOf`) is that of the profile that tells of it.
DownloadSource sourceOf(const QWebEngineDownloadRequest &request, int privateSession);
}
