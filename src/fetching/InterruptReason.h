#pragma once

#include "Download.h"

#include <QWebEngineDownloadRequest>

/// Why the engine gave a download up, in the program's words.
namespace InterruptReason {
Download::Problem of(QWebEngineDownloadRequest::DownloadInterruptReason reason);
}
