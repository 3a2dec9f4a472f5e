#include "SaveJob.h"

#include "Language.h"

#include <QFileInfo>
#include <QLocale>
#include <QProgressDialog>
#include <QWebEnginePage>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
/// Short jobs show no progress; milliseconds.
constexpr int patience = 800;

QString text(const char *key, const QString &english)
{
    return GetLanguageText(u"PageSaver"_s, QString::fromLatin1(key), english);
}
}

SaveJob::SaveJob(QWebEnginePage *page, const QString &file,
                 QWebEngineDownloadRequest::SavePageFormat format, QWidget *owner)
    : QObject(page)
    , m_page(page)
    , m_owner(owner)
    , m_file(file)
    , m_format(format)
{
}

SaveJob::~SaveJob()
{
    if (m_progress)
        m_progress->close();
}

void SaveJob::start()
{
    connect(m_page->profile(), &QWebEngineProfile::downloadRequested, this, &SaveJob::take);
    showProgress();
    m_page->save(m_file, m_format);
}

bool SaveJob::awaits(const QWebEngineDownloadRequest &request)
{
    const QWebEnginePage *page = request.page();
    const auto *job = page ? page->findChild<SaveJob *>() : nullptr;
    return job && !job->m_request && (request.isSavePageDownload() || request.url() == page->url());
}

void SaveJob::take(QWebEngineDownloadRequest *request)
{
    if (m_request || request->page() != m_page || !awaits(*request))
        return;
    m_request = request;
    if (request->state() == QWebEngineDownloadRequest::DownloadRequested) {
        // What is no markup comes without the place it was to be saved at.
        const QFileInfo file(m_file);
        request->setDownloadDirectory(file.path());
        request->setDownloadFileName(file.fileName());
        request->accept();
    }
    disconnect(m_page->profile(), &QWebEngineProfile::downloadRequested, this, nullptr);
    connect(request, &QWebEngineDownloadRequest::stateChanged, this, &SaveJob::watch,
            Qt::QueuedConnection);
    connect(request, &QWebEngineDownloadRequest::receivedBytesChanged, this, [this] {
        if (m_progress && m_request)
            m_progress->setLabelText(
                text("strSaving", u"Saving the page: %1"_s)
                    .arg(QLocale().formattedDataSize(m_request->receivedBytes())));
    });
    QMetaObject::invokeMethod(this, &SaveJob::watch, Qt::QueuedConnection);
}

void SaveJob::watch()
{
    if (m_request && m_request->isFinished())
        end(m_request->state() == QWebEngineDownloadRequest::DownloadCompleted);
}

void SaveJob::showProgress()
{
    m_progress = new QProgressDialog(text("strSaving", u"Saving the page: %1"_s).arg(QString()),
                                     text("cmdCancel", u"Cancel"_s), 0, 0, m_owner);
    m_progress->setObjectName("dlgSaving"_L1);
    m_progress->setAttribute(Qt::WA_DeleteOnClose);
    m_progress->setMinimumDuration(patience);
    m_progress->setAutoReset(false);
    connect(m_progress, &QProgressDialog::canceled, this, [this] {
        m_cancelled = true;
        if (m_request)
            m_request->cancel();
        else
            end(false);
    });
}

void SaveJob::end(bool done)
{
    if (m_progress) {
        m_progress->disconnect(this);
        m_progress->close();
    }
    if (done)
        emit saved();
    else if (!m_cancelled)
        emit failed();
    deleteLater();
}
