#include "RangeDownload.h"

#include "DownloadEnd.h"
#include "DownloadList.h"
#include "DownloadStage.h"
#include "Log.h"
#include "WebThread.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <utility>

namespace {
using State = Download::State;
using Problem = Download::Problem;
using Kind = RangeVerdict::Kind;

/// What is there of an entry, as the server named it.
RangeAsked askedOf(const Download &download)
{
    return {download.received, download.size, download.etag, download.lastModified};
}
}

void RangeDownload::begin(const QString &id, std::unique_ptr<DownloadStage> stage,
                          const MannersNow &manners, const Anew &anew)
{
    auto *download = new RangeDownload(id, std::move(stage), manners, anew);
    downloadList().setTransfer(id, download);
    download->start();
}

RangeDownload::RangeDownload(const QString &id, std::unique_ptr<DownloadStage> stage,
                             const MannersNow &manners, const Anew &anew)
    : m_id(id)
    , m_stage(std::move(stage))
    , m_manners(manners)
    , m_anew(anew)
    , m_web(WebThread::shared())
{
}

RangeDownload::~RangeDownload()
{
    dropFetch();
}

void RangeDownload::start()
{
    m_stage->setAside();
    downloadList().change(m_id, [this](Download &download) {
        download.state = State::Running;
        download.problem = Problem::None;
        download.detail.clear();
        download.ended = {};
        download.stage = m_stage->path();
        download.received = QFileInfo(m_stage->file()).size();
    });
    if (const Download *entry = downloadList().find(m_id))
        fetch(askedOf(*entry));
}

void RangeDownload::fetch(const RangeAsked &asked)
{
    const Download *entry = downloadList().find(m_id);
    if (!entry)
        return;
    dropFetch();
    m_fetch = new RangeFetch(*m_web, {entry->address, m_manners(), asked, m_stage->file()});
    const int turn = ++m_turn;
    connect(m_fetch, &RangeFetch::answered, this,
            [this, turn](const RangeAnswer &answer, const RangeVerdict &verdict) {
                if (turn == m_turn)
                    note(answer, verdict);
            });
    connect(m_fetch, &RangeFetch::arrived, this, [this, turn](qint64 received) {
        if (turn == m_turn)
            noteBytes(received);
    });
    connect(m_fetch, &RangeFetch::ended, this, [this, turn](const RangeEnd &end) {
        if (turn == m_turn)
            take(end);
    });
    if (entry->state == State::Paused)
        tellFetch([](RangeFetch &fetch) { fetch.setPaused(true); });
    tellFetch([](RangeFetch &fetch) { fetch.start(); });
}

void RangeDownload::note(const RangeAnswer &answer, const RangeVerdict &verdict)
{
    downloadList().change(m_id, [&](Download &download) {
        download.size = verdict.size;
        if (verdict.kind != Kind::Anew)
            return;
        download.received = 0;
        download.etag = answer.etag;
        download.lastModified = answer.lastModified;
        // That it was asked for anew has been said.
        if (verdict.problem != Problem::None)
            download.problem = verdict.problem;
    });
}

void RangeDownload::noteBytes(qint64 received)
{
    downloadList().change(m_id, [received](Download &download) { download.received = received; });
}

void RangeDownload::take(const RangeEnd &end)
{
    if (end.verdict.kind == Kind::Append || end.verdict.kind == Kind::Anew)
        noteBytes(end.received);
    if (end.problem != Problem::None) {
        if (!goesOnAfterPause(end))
            fail(end);
        return;
    }
    switch (end.verdict.kind) {
    case Kind::Append:
    case Kind::Anew:
    case Kind::Whole:
        complete(end);
        break;
    case Kind::AskAnew:
        askAnew(end.verdict);
        break;
    case Kind::Page:
        giveToPage();
        break;
    case Kind::Refused:
        fail(end);
        break;
    }
}

/// The bytes that are there stay until others come.
void RangeDownload::askAnew(const RangeVerdict &verdict)
{
    downloadList().change(m_id,
                          [&verdict](Download &download) { download.problem = verdict.problem; });
    fetch({});
}

void RangeDownload::complete(const RangeEnd &end)
{
    dropFetch();
    downloadList().change(m_id, [&end](Download &download) {
        download.size = end.received;
        download.received = end.received;
    });
    DownloadEnd::begin(m_id, std::move(m_stage));
    deleteLater();
}

void RangeDownload::giveToPage()
{
    dropFetch();
    DownloadStage::drop(std::move(m_stage));
    finish(State::Failed, Problem::NoRanges, {});
    m_anew(m_id);
}

void RangeDownload::fail(const RangeEnd &end)
{
    qCWarning(lcFiles) << "a download was not continued to its end:" << end.detail;
    dropFetch();
    // More than there should be is of no use.
    if (end.problem == Problem::WrongLength)
        DownloadStage::drop(std::move(m_stage));
    finish(State::Failed, end.problem, end.detail);
}

/// What is in the stage still stays for the next time.
void RangeDownload::finish(State state, Problem problem, const QString &detail)
{
    const qint64 received = m_stage ? QFileInfo(m_stage->file()).size() : 0;
    const QString stage = m_stage ? m_stage->path() : QString();
    if (m_stage) {
        m_stage->keep();
        m_stage.reset();
    }
    deleteLater();
    downloadList().change(m_id, [&](Download &download) {
        download.state = state;
        download.problem = problem;
        download.detail = detail;
        download.stage = stage;
        download.received = received;
        download.ended = QDateTime::currentDateTimeUtc();
    });
}

/// A server that hung up while nobody listened is asked for the rest once more.
bool RangeDownload::goesOnAfterPause(const RangeEnd &end)
{
    const Download *entry = downloadList().find(m_id);
    if (!std::exchange(m_wasPaused, false) || end.problem != Problem::ConnectionLost || !entry)
        return false;
    const RangeAsked asked = askedOf(*entry);
    const bool canGoOn = !asked.condition().isEmpty();
    if (canGoOn)
        fetch(asked);
    return canGoOn;
}

void RangeDownload::pause()
{
    m_wasPaused = true;
    downloadList().change(m_id, [](Download &download) { download.state = State::Paused; });
    tellFetch([](RangeFetch &fetch) { fetch.setPaused(true); });
}

void RangeDownload::resume()
{
    downloadList().change(m_id, [](Download &download) { download.state = State::Running; });
    tellFetch([](RangeFetch &fetch) { fetch.setPaused(false); });
}

void RangeDownload::cancel()
{
    if (m_fetch) {
        // Not before nothing is written any more.
        connect(m_fetch, &QObject::destroyed, QCoreApplication::instance(),
                [stage = std::make_shared<std::unique_ptr<DownloadStage>>(std::move(m_stage))] {
                    DownloadStage::drop(std::move(*stage));
                });
        dropFetch();
    }
    DownloadStage::drop(std::move(m_stage));
    finish(State::Cancelled, Problem::None, {});
}

void RangeDownload::leave()
{
    ++m_turn;
    if (RangeFetch *fetch = std::exchange(m_fetch, nullptr))
        QMetaObject::invokeMethod(
            fetch, [fetch] { delete fetch; }, Qt::BlockingQueuedConnection);
    // No later turn of the event loop may come.
    m_web.reset();
    finish(State::Unfinished, Problem::None, {});
}

void RangeDownload::tellFetch(void (*what)(RangeFetch &))
{
    if (m_fetch)
        QMetaObject::invokeMethod(
            m_fetch, [fetch = m_fetch, what] { what(*fetch); }, Qt::QueuedConnection);
}

/// It goes in its thread, which must be there until then and may have a write to wait for.
void RangeDownload::dropFetch()
{
    ++m_turn;
    if (RangeFetch *fetch = std::exchange(m_fetch, nullptr)) {
        connect(fetch, &QObject::destroyed, QCoreApplication::instance(), [web = m_web] {});
        fetch->deleteLater();
    }
}
