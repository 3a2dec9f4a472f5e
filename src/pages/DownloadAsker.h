#pragma once

#include <QUrl>

/// Who of a page wants a file: the page itself or its user, or a frame in it.
struct DownloadAsker {
    /// Of the frame; empty: the page's own.
    QUrl site = {};
    /// A frame that is shut off from its own site, or has none.
    bool isFrameWithoutSite = false;
};
