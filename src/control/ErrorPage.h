#pragma once

class QUrl;
class QWebEngineLoadingInfo;
class QWebEnginePage;

/// Our own page for an address that could not be opened. It replaces what the
/// engine shows there, so that the page's address, its place in the history and a reload are
/// those of the address that failed.
namespace ErrorPage {
void show(QWebEnginePage *page, const QUrl &url, const QWebEngineLoadingInfo &info);
}
