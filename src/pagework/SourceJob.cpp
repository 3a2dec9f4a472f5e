#include "SourceJob.h"

#include "FileWriter.h"
#include "JobProgress.h"
#include "PageScripts.h"
#include "SourceReader.h"
#include "Texts.h"
#include "WebPage.h"

#include <QProgressDialog>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
bool isSuccess(int status)
{
    return status >= 200 && status < 300;
}

constexpr Texts<"PageSaver"> texts;
}

SourceJob::SourceJob(WebPage *page, const QString &file, Otherwise otherwise, QWidget *owner)
    : QObject(page)
    , m_page(page)
    , m_hold(page, PageHold::AtExit::GoesWithPage)
    , m_file(file)
    , m_reader(new SourceReader(*page, this))
    , m_otherwise(otherwise)
{
    m_progress = openJobProgress(owner, u"dlgSaving"_s,
                                 texts.at<"strSaving", "Saving the page: %1">().arg(QString()),
                                 texts.at<"cmdCancel", "Cancel">());
    connect(m_progress, &QProgressDialog::canceled, this, [this] {
        m_over = true;
        deleteLater();
    });
    connect(m_reader, &SourceReader::came, this, [this](const QByteArray &bytes, int status) {
        if (isSuccess(status))
            saveBytes(bytes);
        else
            useLiveContents();
    });
    connect(m_reader, &SourceReader::missing, this, &SourceJob::useLiveContents);
    // What was to be saved is gone then.
    connect(page, &QWebEnginePage::renderProcessTerminated, this,
            [this](QWebEnginePage::RenderProcessTerminationStatus status) {
                // Pages that are being shut down end normally.
                if (status != QWebEnginePage::NormalTerminationStatus)
                    end(false);
            });
    connect(page, &WebPage::documentStarted, this, [this] { end(false); });
}

SourceJob::~SourceJob()
{
    if (m_progress)
        m_progress->close();
}

void SourceJob::start()
{
    m_reader->start();
}

void SourceJob::useLiveContents()
{
    if (m_over)
        return;
    // The engine waits for this to return.
    const auto later = [self = QPointer(this)](const QString &contents) {
        if (self)
            QMetaObject::invokeMethod(
                self.data(), [self, contents] { self->saveLive(contents); }, Qt::QueuedConnection);
    };
    if (m_otherwise == Otherwise::LiveMarkup)
        m_page->toHtml(later);
    else
        m_page->runJavaScript(PageScripts::isolatedSource(u"page-text.js"_s),
                              QWebEngineScript::ApplicationWorld,
                              [later](const QVariant &text) { later(text.toString()); });
}

void SourceJob::saveLive(const QString &contents)
{
    if (contents.isEmpty())
        end(false);
    else if (m_otherwise == Otherwise::LiveMarkup)
        saveBytes("\xEF\xBB\xBF" + contents.toUtf8());
    else
        saveBytes(contents.toUtf8());
}

void SourceJob::saveBytes(const QByteArray &bytes)
{
    if (!m_over)
        end(bool(FileWriter::write(m_file, bytes)));
}

void SourceJob::end(bool done)
{
    if (std::exchange(m_over, true))
        return;
    if (done)
        emit saved();
    else
        emit failed();
    deleteLater();
}
