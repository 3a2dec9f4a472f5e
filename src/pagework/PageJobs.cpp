#include "PageJobs.h"

#include "PageHold.h"

#include <QPrinter>
#include <QWebEngineScript>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {
constexpr int neededAnswers = 2;
}

PageJobs::PageJobs(QWebEnginePage *page)
    : QObject(page)
    , m_page(page)
{
    connect(page, &QWebEnginePage::renderProcessTerminated, this, &PageJobs::rendererGone);
    connect(page, &QWebEnginePage::renderProcessPidChanged, this, &PageJobs::rendererChanged);
    // A page that goes away in the same process takes the answer along as well.
    connect(page, &QWebEnginePage::loadFinished, this, [this] {
        if (m_running && !m_begun)
            waitForProcess(neededAnswers);
    });
}

PageJobs::~PageJobs() = default;

PageJobs *PageJobs::of(QWebEnginePage *page)
{
    auto *jobs = page->findChild<PageJobs *>(QString(), Qt::FindDirectChildrenOnly);
    return jobs ? jobs : new PageJobs(page);
}

void PageJobs::toPdf(QWebEnginePage *page, const QPageLayout &layout, const QPageRanges &ranges,
                     QObject *receiver, const PdfDone &done)
{
    of(page)->add({layout, ranges, nullptr,
                   [receiver = QPointer(receiver), done](const QByteArray &pdf, bool) {
                       if (receiver)
                           done(pdf);
                   }});
}

void PageJobs::print(QWebEnginePage *page, const std::shared_ptr<QPrinter> &printer,
                     QObject *receiver, const PrintDone &done)
{
    of(page)->add(
        {{}, {}, printer, [receiver = QPointer(receiver), done](const QByteArray &, bool printed) {
             if (receiver)
                 done(printed);
         }});
}

bool PageJobs::isPrinting(const QWebEnginePage *page)
{
    const auto *jobs = page->findChild<PageJobs *>(QString(), Qt::FindDirectChildrenOnly);
    return jobs && jobs->m_running && jobs->m_begun;
}

void PageJobs::add(const Job &job)
{
    m_waiting.enqueue(job);
    startNext();
}

void PageJobs::startNext()
{
    if (m_running || m_waiting.isEmpty())
        return;
    m_running = true;
    if (!m_hold)
        m_hold = std::make_unique<PageHold>(m_page, PageHold::AtExit::Stays);
    m_begun = false;
    m_current = m_waiting.dequeue();
    const int number = ++m_number;
    if (m_page->renderProcessPid() == 0) {
        end(number, {}, false);
        return;
    }
    waitForProcess(neededAnswers);
}

/// A process that is busy, or hangs, would leave the job open in the engine for that long. An
/// answer may have lain here while this program was busy itself, so a second one is waited for.
void PageJobs::waitForProcess(int answers)
{
    m_page->runJavaScript(u"0"_s, QWebEngineScript::ApplicationWorld,
                          [self = QPointer(this), number = m_number, answers](const QVariant &) {
                              if (!self || !self->m_running || self->m_begun
                                  || number != self->m_number)
                                  return;
                              if (answers > 1)
                                  self->waitForProcess(answers - 1);
                              else
                                  self->begin();
                          });
}

void PageJobs::begin()
{
    const int number = m_number;
    m_begun = true;
    // The engine gives up what it holds when the page is stopped.
    if (std::exchange(m_jammed, false))
        m_page->triggerAction(QWebEnginePage::Stop);
    if (!m_current.printer) {
        m_page->printToPdf(
            [self = QPointer(this), number](const QByteArray &pdf) {
                if (self)
                    self->end(number, pdf, !pdf.isEmpty());
            },
            m_current.layout, m_current.ranges);
        return;
    }
    QWebEngineView *view = QWebEngineView::forPage(m_page);
    if (!view) {
        end(number, {}, false);
        return;
    }
    connect(view, &QWebEngineView::printFinished, this, [this, view, number](bool printed) {
        disconnect(view, &QWebEngineView::printFinished, this, nullptr);
        end(number, {}, printed);
    });
    view->print(m_current.printer.get());
}

/// The engine calls this from inside itself.
void PageJobs::end(int number, const QByteArray &pdf, bool printed)
{
    QMetaObject::invokeMethod(
        this,
        [this, number, pdf, printed] {
            if (m_running && number == m_number)
                finish(pdf, printed);
        },
        Qt::QueuedConnection);
}

void PageJobs::finish(const QByteArray &pdf, bool printed)
{
    const Job job = std::exchange(m_current, {});
    m_running = false;
    startNext();
    const QPointer<PageJobs> self(this);
    job.done(pdf, printed);
    if (self && !m_running)
        m_hold.reset();
}

/// The engine never answers for a page whose process has ended.
void PageJobs::rendererGone()
{
    m_jammed = false;
    if (m_running)
        end(m_number, {}, false);
}

/// The next page may have another process. The engine then loses the job of the one before, and
/// the answer that was waited for.
void PageJobs::rendererChanged()
{
    if (!m_running || m_page->renderProcessPid() == 0)
        return;
    if (!m_begun) {
        waitForProcess(neededAnswers);
        return;
    }
    m_jammed = true;
    end(m_number, {}, false);
}
