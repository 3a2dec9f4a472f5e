#include "SourceJob.h"

#include "FileWriter.h"
#include "JobProgress.h"
#include "PageScripts.h"
#include "Texts.h"
#include "WebPage.h"

#include <QFile>
#include <QProgressDialog>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
/// For the server to answer once more; milliseconds.
constexpr int longestWait = 30'000;
int lastNumber = 0;

constexpr Texts<"PageSaver"> texts;
}

SourceJob::SourceJob(WebPage *page, const QString &file, Otherwise otherwise, QWidget *owner)
    : QObject(page)
    , m_page(page)
    , m_hold(page, PageHold::AtExit::GoesWithPage)
    , m_file(file)
    , m_number(++lastNumber)
    , m_otherwise(otherwise)
{
    m_progress = openJobProgress(owner, u"dlgSaving"_s,
                                 texts.at<"strSaving", "Saving the page: %1">().arg(QString()),
                                 texts.at<"cmdCancel", "Cancel">());
    connect(m_progress, &QProgressDialog::canceled, this, [this] {
        m_over = true;
        deleteLater();
    });
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &SourceJob::useLiveContents);
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
    if (!m_page->url().isLocalFile()) {
        readInPage();
        return;
    }
    QFile source(m_page->url().toLocalFile());
    if (source.open(QIODevice::ReadOnly))
        saveBytes(source.readAll());
    else
        useLiveContents();
}

void SourceJob::readInPage()
{
    connect(m_page, &WebPage::sourceRead, this, [this](int number) {
        if (number == m_number)
            collect();
    });
    const QString script =
        PageScripts::isolatedSource(u"page-source.js"_s)
            .replace("%CACHE%"_L1, m_page->mayAskAgain() ? "force-cache"_L1 : "only-if-cached"_L1)
            .replace("%NUMBER%"_L1, QString::number(m_number));
    m_page->runJavaScript(script, QWebEngineScript::ApplicationWorld);
    m_limit.start(longestWait);
}

void SourceJob::collect()
{
    m_limit.stop();
    const QString script =
        u"(() => { const source = globalThis.orvaneSource%1 ?? '';"
        u" delete globalThis.orvaneSource%1; return source; })()"_s.arg(m_number);
    m_page->runJavaScript(script, QWebEngineScript::ApplicationWorld,
                          [self = QPointer(this)](const QVariant &source) {
                              // The engine waits for this to return.
                              if (self)
                                  QMetaObject::invokeMethod(
                                      self.data(),
                                      [self, source] { self->takeCollected(source.toString()); },
                                      Qt::QueuedConnection);
                          });
}

void SourceJob::takeCollected(const QString &dataUrl)
{
    const qsizetype comma = dataUrl.indexOf(u',');
    const auto decoded = QByteArray::fromBase64Encoding(dataUrl.mid(comma + 1).toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    // Empty is what a file may be as well.
    if (comma < 0 || !decoded)
        useLiveContents();
    else
        saveBytes(decoded.decoded);
}

void SourceJob::useLiveContents()
{
    if (m_over || std::exchange(m_asked, true))
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
