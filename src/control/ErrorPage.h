#pragma once

class QUrl;
class QWebEnginePage;

/// Our own page for an address that could not be opened. It replaces what the
/// engine shows there, so that the page's address, its place in the history and a reload are
/// those of the address that failed.
namespace ErrorPage {
/// `error`: the engine's number of an error of the network.
void show(QWebEnginePage *page, const QUrl &url, int error);
}
