#include "SaveJob.h"

#include "DownloadPages.h"
#include "EngineVersion.h"
#include "JobProgress.h"
#include "Log.h"
#include "PrivateProfiles.h"
#include "SaveStage.h"
#include "Texts.h"
#include "WebPage.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QProgressDialog>
#include <QThreadPool>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
QList<SaveJob *> jobs;

constexpr Texts<"PageSaver"> texts;
}

SaveJob::SaveJob(WebPage *page, const QString &file,
                 QWebEngineDownloadRequest::SavePageFormat format, QWidget *owner)
    : QObject(page)
    , m_page(page)
    , m_owner(owner)
    , m_hold(std::make_unique<PageHold>(page, PageHold::AtExit::GoesWithPage))
    , m_stage(std::make_shared<SaveStage>(file))
    , m_format(format)
{
    jobs.append(this);
}

SaveJob::~SaveJob()
{
    jobs.removeOne(this);
    if (m_progress)
        m_progress->close();
}

void SaveJob::start()
{
    if (!m_stage->isValid()) {
        end(false);
        return;
    }
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this,
            [this](QWebEnginePage::RenderProcessTerminationStatus status) {
                // Pages that are being shut down end normally.
                if (status != QWebEnginePage::NormalTerminationStatus)
                    giveUp();
            });
    showProgress();
    DownloadPages::note(*m_page, m_page->url(), {});
    m_page->save(m_stage->file(), m_format);
}

bool SaveJob::take(QWebEngineDownloadRequest &request, int privateSession)
{
    const auto isMine = [&request, privateSession](const SaveJob *job) {
        return !job->m_request && !job->m_keeps && job->isFor(request, privateSession);
    };
    const auto job = std::find_if(jobs.begin(), jobs.end(), isMine);
    if (job == jobs.end())
        return false;
    (*job)->begin(request);
    return true;
}

/// The place is the job's alone. From older engines what is no markup comes without it, as any
/// other file: whose that is may be unknown.
bool SaveJob::isFor(const QWebEngineDownloadRequest &request, int privateSession) const
{
    if (PrivateProfiles::numberOf(m_page->profile()) != privateSession)
        return false;
    if (request.isSavePageDownload())
        return QDir(request.downloadDirectory()).absoluteFilePath(request.downloadFileName())
            == QFileInfo(m_stage->file()).absoluteFilePath();
    if (savesBringTheirPlace || request.url() != m_page->url())
        return false;
    const WebPage *source = DownloadPages::sourceOf(request, privateSession).page;
    return !source || source == m_page;
}

void SaveJob::begin(QWebEngineDownloadRequest &request)
{
    m_request = &request;
    if (request.state() == QWebEngineDownloadRequest::DownloadRequested) {
        // Only engines that do not bring the place.
        const QFileInfo file(m_stage->file());
        request.setDownloadDirectory(file.path());
        request.setDownloadFileName(file.fileName());
        request.accept();
    }
    connect(m_request, &QWebEngineDownloadRequest::stateChanged, this, &SaveJob::watch,
            Qt::QueuedConnection);
    connect(m_request, &QWebEngineDownloadRequest::receivedBytesChanged, this, [this] {
        if (m_progress && m_request)
            m_progress->setLabelText(texts.at<"strSaving", "Saving the page: %1">().arg(
                QLocale().formattedDataSize(m_request->receivedBytes())));
    });
    QMetaObject::invokeMethod(this, &SaveJob::watch, Qt::QueuedConnection);
}

void SaveJob::watch()
{
    if (!m_request || m_keeps)
        return;
    if (m_over && !m_request->isFinished())
        m_request->cancel();
    else if (m_over)
        deleteLater();
    else if (m_request->state() == QWebEngineDownloadRequest::DownloadCompleted)
        keep();
    else if (m_request->isFinished())
        end(false);
}

void SaveJob::showProgress()
{
    m_progress = openJobProgress(m_owner, u"dlgSaving"_s,
                                 texts.at<"strSaving", "Saving the page: %1">().arg(QString()),
                                 texts.at<"cmdCancel", "Cancel">());
    connect(m_progress, &QProgressDialog::canceled, this, [this] {
        m_cancelled = true;
        giveUp();
    });
}

/// The engine may write for a while yet, and to what was its place: the job, and with it the place,
/// lasts until the engine is through.
void SaveJob::giveUp()
{
    const bool engineIsThrough = !m_request && m_page->renderProcessPid() == 0;
    if (!std::exchange(m_over, true))
        tell(false);
    m_stage->discard();
    m_hold.reset();
    if (engineIsThrough)
        deleteLater();
    else
        watch();
}

/// Neither the page nor the user has a say in it any more. The disk may take its time.
void SaveJob::keep()
{
    m_keeps = true;
    disconnect(m_page, nullptr, this, nullptr);
    closeProgress();
    QThreadPool::globalInstance()->start([stage = m_stage, self = QPointer(this)] {
        const bool kept = stage->commit();
        stage->discard();
        QMetaObject::invokeMethod(
            qApp,
            [self, kept] {
                if (self)
                    self->end(kept);
            },
            Qt::QueuedConnection);
    });
}

/// The engine's end may be heard of twice before the job goes.
void SaveJob::end(bool done)
{
    if (!std::exchange(m_over, true))
        tell(done);
    deleteLater();
}

void SaveJob::closeProgress()
{
    if (!m_progress)
        return;
    m_progress->disconnect(this);
    m_progress->close();
}

void SaveJob::tell(bool done)
{
    closeProgress();
    if (done) {
        emit saved();
    } else if (!m_cancelled) {
        qCWarning(lcEngine) << "not saved:" << PrivateProfiles::siteForLog(*m_page);
        emit failed();
    }
}
