#include "EngineDownload.h"

#include "DownloadEnd.h"
#include "DownloadList.h"
#include "DownloadStage.h"
#include "InterruptReason.h"
#include "Log.h"
#include "PlaceQuestion.h"

#include <QFileInfo>

using State = Download::State;

EngineDownload::EngineDownload(const QString &id, std::unique_ptr<DownloadStage> stage)
    : m_id(id)
    , m_stage(std::move(stage))
{
    connect(&downloadList(), &DownloadList::removed, this, [this](const QString &removed) {
        if (removed == m_id)
            cancel();
    });
}

EngineDownload::~EngineDownload() = default;

void EngineDownload::accept(QWebEngineDownloadRequest &request)
{
    // The one before stays: with it the engine would remove the download.
    if (m_request)
        m_request->disconnect(this);
    m_request = &request;
    const QFileInfo file(m_stage->file());
    request.setDownloadDirectory(file.path());
    request.setDownloadFileName(file.fileName());
    request.accept();
    watch();
    downloadList().change(m_id, [this](Download &download) {
        download.stage = download.isRepeatable && !m_isHeld ? m_stage->path() : QString();
    });
}

void EngineDownload::watch()
{
    using Request = QWebEngineDownloadRequest;
    connect(m_request, &Request::stateChanged, this, &EngineDownload::update);
    connect(m_request, &Request::receivedBytesChanged, this, &EngineDownload::noteProgress);
    connect(m_request, &Request::totalBytesChanged, this, &EngineDownload::noteProgress);
    connect(m_request, &Request::isPausedChanged, this, &EngineDownload::noteProgress);
}

/// Whether one that failed can be continued is said after its state.
void EngineDownload::update()
{
    if (m_request->state() == QWebEngineDownloadRequest::DownloadInProgress)
        noteProgress();
    else
        QMetaObject::invokeMethod(this, &EngineDownload::settle, Qt::QueuedConnection);
}

void EngineDownload::noteProgress()
{
    if (!m_request || m_request->state() != QWebEngineDownloadRequest::DownloadInProgress)
        return;
    downloadList().change(m_id, [this](Download &download) {
        const State going = m_request->isPaused() ? State::Paused : State::Running;
        download.state = m_isHeld ? State::Held : going;
        download.received = m_request->receivedBytes();
        // Of one that it takes up again the engine does not know it for a moment.
        if (m_request->totalBytes() > 0)
            download.size = m_request->totalBytes();
    });
}

/// What is small is all there before it can be held, and waits whole.
void EngineDownload::settle()
{
    const bool isOver = !m_request || !m_stage;
    if (isOver || (m_isHeld && isCompleted()))
        return;
    switch (m_request->state()) {
    case QWebEngineDownloadRequest::DownloadCompleted:
        if (m_question)
            noteWhole(State::Unplaced);
        else
            complete();
        break;
    case QWebEngineDownloadRequest::DownloadInterrupted:
    case QWebEngineDownloadRequest::DownloadCancelled:
        fail();
        break;
    default:
        break;
    }
}

/// The engine counts what a page's server sent packed, and at the end what came out of it.
void EngineDownload::noteWhole(State state)
{
    const qint64 size = m_request->receivedBytes();
    downloadList().change(m_id, [size, state](Download &download) {
        download.received = size;
        download.size = size;
        download.state = state;
    });
}

Transfer *EngineDownload::complete()
{
    noteWhole(State::Finishing);
    Transfer *next = DownloadEnd::begin(m_id, std::move(m_stage));
    end();
    return next;
}

void EngineDownload::fail()
{
    const auto reason = m_request->interruptReason();
    const Download *entry = downloadList().find(m_id);
    // Told already.
    if (entry && entry->isOver())
        return;
    downloadList().change(m_id, [&](Download &download) {
        download.state = State::Failed;
        download.problem =
            m_stage->isThere() ? InterruptReason::of(reason) : Download::Problem::FolderGone;
        // Which the engine has no words for, and takes others.
        if (download.problem != Download::Problem::WrongLength)
            download.detail = m_request->interruptReasonString();
        download.received = m_request->receivedBytes();
        download.ended = QDateTime::currentDateTimeUtc();
        if (!hasBytes())
            download.stage.clear();
    });
    qCWarning(lcEngine) << "a download has failed:" << m_request->interruptReasonString();
    if (m_request->isFinished() || !m_stage->isThere())
        giveUp();
}

/// Where its folder was taken away, the engine makes another in its place, which holds nothing.
bool EngineDownload::hasBytes() const
{
    return m_stage->isThere() && !m_stage->arrived().isEmpty();
}

/// The engine can do no more for it.
void EngineDownload::giveUp()
{
    const Download *entry = downloadList().find(m_id);
    m_stage->setAside();
    if (entry && entry->isRepeatable && !entry->isPrivate() && hasBytes()) {
        m_stage->keep();
        // Whoever goes on with it takes it at once.
        m_stage.reset();
    } else {
        downloadList().change(m_id, [](Download &download) { download.stage.clear(); });
    }
    end();
}

void EngineDownload::askForPlace(QWidget *owner)
{
    m_question = new PlaceQuestion(m_id, owner, this);
    connect(m_question, &PlaceQuestion::answered, this, &EngineDownload::endQuestion);
}

void EngineDownload::endQuestion(bool isWanted)
{
    m_question->deleteLater();
    m_question.clear();
    if (!isWanted)
        cancel();
    else if (m_request)
        update();
}

bool EngineDownload::isCompleted() const
{
    return m_request && m_request->state() == QWebEngineDownloadRequest::DownloadCompleted;
}

bool EngineDownload::isInterrupted() const
{
    return m_request && m_request->state() == QWebEngineDownloadRequest::DownloadInterrupted;
}

bool EngineDownload::goOn()
{
    const Download *entry = downloadList().find(m_id);
    if (!entry || !m_stage)
        return false;
    // From its beginning it comes as well by a new request, where one brings the same.
    const bool isOfUse = !m_stage->arrived().isEmpty() || !entry->isRepeatable;
    if (!isInterrupted() || m_request->isFinished() || !isOfUse) {
        giveUp();
        return false;
    }
    downloadList().setTransfer(m_id, this);
    downloadList().change(m_id, [](Download &download) {
        download.state = State::Running;
        download.problem = Download::Problem::None;
        download.detail.clear();
        download.ended = {};
    });
    m_request->resume();
    return true;
}

void EngineDownload::hold()
{
    m_isHeld = true;
    m_request->pause();
    downloadList().change(m_id, [](Download &download) {
        download.state = State::Held;
        download.stage.clear();
    });
}

void EngineDownload::endHold(bool isWanted)
{
    const Download *entry = downloadList().find(m_id);
    if (!std::exchange(m_isHeld, false) || !entry || entry->isOver())
        return;
    if (!isWanted) {
        cancel();
        return;
    }
    downloadList().change(m_id, [this](Download &download) {
        download.state = State::Running;
        download.stage = download.isRepeatable ? m_stage->path() : QString();
    });
    if (!isCompleted())
        m_request->resume();
    update();
}

void EngineDownload::pause()
{
    if (m_request && !m_isHeld)
        m_request->pause();
}

/// What the user goes on with he wants.
void EngineDownload::resume()
{
    if (m_isHeld)
        endHold(true);
    else if (m_request)
        m_request->resume();
}

void EngineDownload::cancel()
{
    if (!m_stage)
        return;
    if (m_request) {
        m_request->disconnect(this);
        m_request->cancel();
    }
    downloadList().change(m_id, [](Download &download) {
        download.stage.clear();
        if (download.isOver())
            return;
        download.state = State::Cancelled;
        download.ended = QDateTime::currentDateTimeUtc();
    });
    end();
}

void EngineDownload::leave()
{
    if (!m_stage)
        return;
    if (isCompleted() && !m_isHeld) {
        if (Transfer *end = complete())
            end->leave();
        return;
    }
    const Download *entry = downloadList().find(m_id);
    if (!entry || !entry->isRepeatable || entry->isPrivate() || m_isHeld
        || m_stage->arrived().isEmpty()) {
        cancel();
        return;
    }
    if (m_request) {
        m_request->disconnect(this);
        m_request->pause();
    }
    m_stage->setAside();
    m_stage->keep();
    downloadList().change(m_id, [this](Download &download) {
        download.stage = m_stage->path();
        download.received = QFileInfo(m_stage->arrived()).size();
        if (download.isOver())
            return;
        download.state = State::Unfinished;
        download.ended = QDateTime::currentDateTimeUtc();
    });
    m_stage.reset();
    end();
}

/// The engine's objects are not deleted inside their own signals.
void EngineDownload::end()
{
    delete m_question.data();
    DownloadStage::drop(std::move(m_stage));
    if (m_request) {
        m_request->disconnect(this);
        m_request->deleteLater();
    }
    deleteLater();
}
