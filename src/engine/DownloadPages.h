#pragma once

class QUrl;
class QWebEngineDownloadRequest;
class WebPage;

/// Which page a download comes from. The engine's own word for it ends the program where the page
/// has gone since, as the page of a window closes that was made for a file alone. So what the pages
/// ask for is noted, and whose the last request for an address was counts.
namespace DownloadPages {
/// `page` asks for `url`, as for a page, a frame or a file.
void note(WebPage &page, const QUrl &url);
/// A page is about to go.
void noteEnd(const WebPage &page);
/// Null where it has gone, or cannot be told safely.
WebPage *of(const QWebEngineDownloadRequest &request);
}
