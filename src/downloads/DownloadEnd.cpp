#include "DownloadEnd.h"

#include "DownloadList.h"
#include "DownloadStage.h"
#include "Log.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <utility>

namespace {
/// Of its own: a disk may take minutes for what it has buffered.
QThreadPool &workers()
{
    static QThreadPool pool;
    return pool;
}

/// Less than the server announced is a beginning that can be continued, more is not.
bool isOfUse(const FinalFile::Result &result, qint64 size)
{
    return result.problem != Download::Problem::WrongLength || result.size < size;
}

/// The stage's lock, and the stage where it is of no more use, are gone when this returns.
DownloadEnd::Outcome work(const Download &download, const std::unique_ptr<DownloadStage> stage)
{
    DownloadEnd::Outcome outcome{FinalFile::place(download, *stage), {}};
    const FinalFile::Result &result = outcome.result;
    if (result.problem != Download::Problem::None && isOfUse(result, download.size)) {
        stage->keep();
        outcome.stage = stage->path();
    }
    return outcome;
}
}

DownloadEnd::DownloadEnd(const Download &download, std::unique_ptr<DownloadStage> stage)
    : m_download(download)
    , m_stage(std::move(stage))
{
}

DownloadEnd::~DownloadEnd() = default;

Transfer *DownloadEnd::begin(const QString &id, std::unique_ptr<DownloadStage> stage)
{
    downloadList().change(id, [&stage](Download &download) {
        download.state = Download::State::Finishing;
        // Whole, it can be given its name after a restart, whatever it was made of.
        download.stage = stage->path();
    });
    const Download *entry = downloadList().find(id);
    if (!entry)
        return nullptr;
    auto *end = new DownloadEnd(*entry, std::move(stage));
    downloadList().setTransfer(id, end);
    downloadList().record(id, [self = QPointer(end)] {
        if (self)
            self->start();
    });
    return end;
}

/// Nothing where it has begun.
void DownloadEnd::start()
{
    if (!m_stage)
        return;
    // What a pool runs can be copied.
    auto outcome = std::make_shared<std::promise<Outcome>>();
    auto given = std::make_shared<std::unique_ptr<DownloadStage>>(std::move(m_stage));
    m_outcome = outcome->get_future();
    workers().start([outcome, given, download = m_download, self = QPointer(this)] {
        outcome->set_value(work(download, std::move(*given)));
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self] {
                if (self)
                    self->finish();
            },
            Qt::QueuedConnection);
    });
}

void DownloadEnd::leave()
{
    start();
    finish();
}

/// Waits where the worker is not through.
void DownloadEnd::finish()
{
    if (!m_outcome.valid())
        return;
    const Outcome outcome = m_outcome.get();
    const FinalFile::Result &result = outcome.result;
    const bool isDone = result.problem == Download::Problem::None;
    downloadList().change(m_download.id, [&](Download &download) {
        download.stage = outcome.stage;
        download.state = isDone ? Download::State::Done : Download::State::Failed;
        // That it began anew is said of what it is by now, too.
        if (!isDone)
            download.problem = result.problem;
        download.detail = result.detail;
        download.ended = QDateTime::currentDateTimeUtc();
        if (result.size >= 0)
            download.received = result.size;
        if (isDone) {
            download.name = result.name;
            download.size = result.size;
        }
    });
    if (!isDone)
        qCWarning(lcFiles) << "a download has not come to its end:" << result.detail;
    deleteLater();
}
