#pragma once

#include "Download.h"
#include "FinalFile.h"
#include "Transfer.h"

#include <future>
#include <memory>

class DownloadStage;

/// Brings a download whose bytes are all there to its end, beside the program: it is `Finishing`
/// until its file has its name, and then `Done`, or `Failed`. What may be of use for going on stays
/// in its stage. The list's file knows that it is whole before it gets its name: a program that is
/// killed in between leaves what the next one can tell apart.
class DownloadEnd : public Transfer {
    Q_OBJECT

public:
    /// Takes over the entry of that id from what brought the bytes, which are in `file` of the
    /// stage. Its size is the one that the server announced. Null where there is no such entry.
    static Transfer *begin(const QString &id, std::unique_ptr<DownloadStage> stage);

    void pause() override { }
    void resume() override { }
    /// Too late: the file is whole.
    void cancel() override { }
    void leave() override;

    struct Outcome {
        FinalFile::Result result;
        /// The path of the one that stays.
        QString stage;
    };

private:
    DownloadEnd(const Download &download, std::unique_ptr<DownloadStage> stage);
    ~DownloadEnd() override;

    void start();
    void finish();

    Download m_download;
    /// Until the worker has it.
    std::unique_ptr<DownloadStage> m_stage;
    std::future<Outcome> m_outcome;
};
