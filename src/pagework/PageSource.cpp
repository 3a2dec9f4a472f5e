#include "PageSource.h"

#include "JobProgress.h"
#include "SourceReader.h"
#include "TextEncoding.h"
#include "Texts.h"
#include "WebPage.h"

#include <QPointer>
#include <QProgressDialog>
#include <QStringDecoder>
#include <QUrl>
#include <QWebEngineScript>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
using Outcome = PageSource::Outcome;

constexpr Texts<"PageSource"> texts;

bool isText(const QString &type)
{
    const QString kind = type.section(u'/', 1);
    return type.isEmpty() || type.startsWith("text/"_L1) || kind.endsWith("xml"_L1)
        || kind.endsWith("json"_L1) || kind.endsWith("javascript"_L1);
}

QString decoded(const QByteArray &bytes, const QString &encoding)
{
    QStringDecoder decoder(encoding.toLatin1().constData());
    // Which depends on what the library was built with.
    if (!decoder.isValid())
        return TextEncoding::decode(bytes);
    return decoder(bytes);
}

/// Reads one source and tells it. Becomes the page's, and deletes itself.
class Reading : public QObject {
public:
    Reading(WebPage &page, QWidget *owner, std::function<void(const PageSource &)> done);
    ~Reading() override;

    void start();

private:
    void followPage();
    void read(const QString &type, const QString &encoding);
    void end(Outcome outcome, const QString &text = {});

    WebPage &m_page;
    std::function<void(const PageSource &)> m_done;
    QPointer<QProgressDialog> m_progress;
    QUrl m_address;
    std::unique_ptr<SourceReader> m_reader;
    /// Of the documents that the page began meanwhile.
    int m_document = 0;
    bool m_over = false;
};

Reading::Reading(WebPage &page, QWidget *owner, std::function<void(const PageSource &)> done)
    : QObject(&page)
    , m_page(page)
    , m_done(std::move(done))
    , m_address(page.url())
{
    m_progress = openJobProgress(owner, u"dlgReadingSource"_s,
                                 texts.at<"strReading", "Reading the source of the page">(),
                                 texts.at<"cmdCancel", "Cancel">());
    const auto drop = [this] { end(Outcome::Nothing); };
    connect(m_progress, &QProgressDialog::canceled, this, drop);
    connect(&page, &QWebEnginePage::renderProcessTerminated, this,
            [drop](QWebEnginePage::RenderProcessTerminationStatus status) {
                // The process of a page before this one ends normally.
                if (status != QWebEnginePage::NormalTerminationStatus)
                    drop();
            });
    connect(&page, &WebPage::documentStarted, this, [this] { followPage(); });
}

Reading::~Reading()
{
    if (m_progress)
        m_progress->close();
}

void Reading::start()
{
    m_page.runJavaScript(
        u"[document.contentType, document.characterSet]"_s, QWebEngineScript::ApplicationWorld,
        [self = QPointer(this)](const QVariant &answer) {
            if (!self)
                return;
            const QStringList form = answer.toStringList();
            // The engine waits for this to return.
            QMetaObject::invokeMethod(
                self.data(), [self, form] { self->read(form.value(0), form.value(1)); },
                Qt::QueuedConnection);
        });
}

/// A page that is loaded once more is read once more.
void Reading::followPage()
{
    ++m_document;
    m_reader.reset();
    if (m_page.url() == m_address)
        start();
    else
        end(Outcome::Nothing);
}

void Reading::read(const QString &type, const QString &encoding)
{
    if (!isText(type)) {
        end(Outcome::NoText);
    } else if (!m_page.mayAskAgain()) {
        // What the cache has under its address may be the page with the form.
        end(Outcome::AnswerToForm);
    } else {
        m_reader = std::make_unique<SourceReader>(m_page, nullptr);
        connect(m_reader.get(), &SourceReader::came, this,
                [this, encoding](const QByteArray &bytes) {
                    end(Outcome::Came, decoded(bytes, encoding));
                });
        connect(m_reader.get(), &SourceReader::missing, this, [this] { end(Outcome::Missing); });
        m_reader->start();
    }
}

/// Later: this may be inside the engine.
void Reading::end(Outcome outcome, const QString &text)
{
    if (std::exchange(m_over, true))
        return;
    QMetaObject::invokeMethod(
        &m_page, [done = m_done, source = PageSource{outcome, text}] { done(source); },
        Qt::QueuedConnection);
    deleteLater();
}
}

void PageSource::read(WebPage &page, QWidget *owner,
                      const std::function<void(const PageSource &)> &done)
{
    (new Reading(page, owner, done))->start();
}
