#pragma once

#include "Download.h"

class DownloadStage;

/// The last steps of a download that is whole.
namespace FinalFile {
struct Result {
    /// Without its folder; empty where nothing came of it.
    QString name;
    Download::Problem problem = Download::Problem::None;
    /// What the system said.
    QString detail;
    /// Bytes.
    qint64 size = -1;
};

/// Puts what is in the stage under the download's name, or a free one like it, in its folder, also
/// on another disk: never over anything but a file that the user has agreed to lose, never to be
/// executed, marked with where it came from, and on the disk as a whole before it has that name.
/// Where a step fails, nothing is there under the name, and the stage stays as it is. Waits for the
/// disk.
Result place(const Download &download, const DownloadStage &stage);
}
