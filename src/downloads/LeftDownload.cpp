#include "LeftDownload.h"

#include "DownloadStage.h"

#include <QFileInfo>

namespace {
/// Seconds by which a file may seem older than it is: some disks keep no finer time, and the clock
/// that the system takes for files is a little behind.
constexpr int roughness = 2;

/// It got its name, and the program ended before it said so. Of the last step only the stage tells:
/// it goes when the file is in its place.
bool isPlaced(const Download &download)
{
    const QFileInfo file(download.path());
    return download.size >= 0 && file.isFile() && file.size() == download.size
        && download.began.isValid() && file.lastModified() >= download.began.addSecs(-roughness);
}

Download withoutBytes(Download download)
{
    if (download.isUnderWay() && isPlaced(download)) {
        download.state = Download::State::Done;
        download.received = download.size;
        download.ended = QFileInfo(download.path()).lastModified();
    }
    download.stage.clear();
    if (download.state != Download::State::Done)
        download.received = 0;
    return download;
}

Download unfinished(Download download)
{
    if (download.isUnderWay())
        download.state = Download::State::Unfinished;
    return download;
}
}

namespace LeftDownload {

std::optional<Download> asLeft(const Download &stored)
{
    if (stored.state == Download::State::Done)
        return stored;
    const QFileInfo stage(stored.stage);
    if (stored.stage.isEmpty() || !stage.isDir()) {
        // A disk that is away may come back.
        const bool isAway = !stored.stage.isEmpty() && !QFileInfo(stage.path()).isDir();
        return unfinished(isAway ? stored : withoutBytes(stored));
    }
    const std::unique_ptr<DownloadStage> left = DownloadStage::take(stored.stage);
    if (!left)
        return stored.isUnderWay() ? std::nullopt : std::optional(stored);
    Download download = stored;
    // Empty, it goes.
    if (left->arrived().isEmpty())
        return unfinished(withoutBytes(stored));
    left->keep();
    download.received = QFileInfo(left->arrived()).size();
    return unfinished(download);
}

bool isWhole(const Download &download)
{
    return download.size >= 0 && download.received == download.size && !download.stage.isEmpty();
}
}
