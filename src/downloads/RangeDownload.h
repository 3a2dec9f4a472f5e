#pragma once

#include "RangeFetch.h"
#include "Transfer.h"

#include <functional>
#include <memory>

class DownloadStage;
class WebThread;

/// Goes on with a download where it ended, with a request of our own for what is missing. Where the
/// server has another file by now, or gives no rest, it begins anew, and the entry says so. It ends
/// as any other download does.
class RangeDownload : public Transfer {
    Q_OBJECT

public:
    /// Has a page begin the entry of that id anew; what was there of it is gone.
    using Anew = std::function<void(const QString &id)>;

    /// Takes over the list's entry of that id, whose bytes are in the stage.
    static void begin(const QString &id, std::unique_ptr<DownloadStage> stage,
                      const MannersNow &manners, const Anew &anew);
    ~RangeDownload() override;

    void pause() override;
    void resume() override;
    void cancel() override;
    void leave() override;

private:
    RangeDownload(const QString &id, std::unique_ptr<DownloadStage> stage,
                  const MannersNow &manners, const Anew &anew);

    void start();
    void fetch(const RangeAsked &asked);
    void note(const RangeAnswer &answer, const RangeVerdict &verdict);
    void noteBytes(qint64 received);
    void take(const RangeEnd &end);
    void askAnew(const RangeVerdict &verdict);
    void complete(const RangeEnd &end);
    void giveToPage();
    void fail(const RangeEnd &end);
    void finish(Download::State state, Download::Problem problem, const QString &detail);
    bool goesOnAfterPause(const RangeEnd &end);
    void tellFetch(void (*what)(RangeFetch &));
    void dropFetch();

    QString m_id;
    std::unique_ptr<DownloadStage> m_stage;
    MannersNow m_manners;
    Anew m_anew;
    std::shared_ptr<WebThread> m_web;
    /// In its thread.
    RangeFetch *m_fetch = nullptr;
    /// What earlier ones said may still be on its way.
    int m_turn = 0;
    /// The server may have hung up in a long pause.
    bool m_wasPaused = false;
};
