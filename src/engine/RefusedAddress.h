#pragma once

#include <QWebEngineUrlRequestInterceptor>

class QUrl;

/// Addresses that nothing opens, wherever they come from: those of the engine's own that make it
/// crash, hang or end, its tools for itself, and the program's inner files. Of the engine's pages
/// only the known harmless ones are open, so that a new one is refused until it is known.
bool isRefusedAddress(const QUrl &url);

/// The same, and those that only the user opens: the program's own pages.
bool isRefusedToPages(const QUrl &url);

/// Keeps the program's inner files from pages that ask for them as scripts, pictures or styles, and
/// everybody from what is on the disk and neither file nor folder: whoever opens a pipe waits for
/// who writes to it, and the engine never ends then. For a whole profile; it leaves everything else
/// as it is.
class FilesGuard : public QWebEngineUrlRequestInterceptor {
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &info) override;
};
