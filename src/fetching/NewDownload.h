#pragma once

#include "Download.h"

class QWebEngineDownloadRequest;
class WebPage;
struct DownloadSource;

/// Entries for the list of files that are about to come to the folder for downloads.
namespace NewDownload {
/// Of what the engine tells of.
Download of(const QWebEngineDownloadRequest &request, const DownloadSource &source);
/// Of what the user wants from a page; its server has not named it yet.
Download at(const QUrl &url, const WebPage &page);
}
