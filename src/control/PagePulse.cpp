#include "PagePulse.h"

#include "PageJobs.h"
#include "WebPage.h"

#include <QPointer>
#include <QWebEngineScript>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
using namespace std::chrono_literals;
constexpr auto untilAskedAgain = 5s;
constexpr auto tickLength = 1s;
constexpr int longestTicks = 5;

QList<PagePulse *> living;

/// Whatever any page says to its user, all pages stand still meanwhile.
bool standsEngineStill()
{
    return std::any_of(living.cbegin(), living.cend(),
                       [](const PagePulse *each) { return each->page().awaitsAnswer(); });
}

/// Debugger and printing hold all pages that the same process runs.
bool isHeld(qint64 process)
{
    return std::any_of(living.cbegin(), living.cend(), [process](const PagePulse *each) {
        const WebPage &page = each->page();
        return page.renderProcessPid() == process
            && (page.devToolsPage() || PageJobs::isPrinting(&page));
    });
}
}

PagePulse::PagePulse(WebPage &page, QObject *bond)
    : QObject(bond)
    , m_page(page)
{
    living.append(this);
    connect(&m_ticks, &QTimer::timeout, this, &PagePulse::tick);
    connect(&page, &WebPage::arrived, this, &PagePulse::beginAnew);
    connect(&page, &QWebEnginePage::renderProcessPidChanged, this, &PagePulse::beginAnew);
    connect(&page, &QWebEnginePage::renderProcessTerminated, this, &PagePulse::beginAnew);
    connect(&page, &QWebEnginePage::visibleChanged, this, &PagePulse::look);
    m_ticks.start(untilAskedAgain);
}

PagePulse::~PagePulse()
{
    living.removeOne(this);
}

bool PagePulse::mustAnswer() const
{
    return (m_page.isVisible() || m_isSilent) && m_page.renderProcessPid() > 0
        && m_page.lifecycleState() == QWebEnginePage::LifecycleState::Active
        && !isHeld(m_page.renderProcessPid());
}

void PagePulse::look()
{
    const bool askedJustNow = m_ticks.remainingTimeAsDuration() > untilAskedAgain - tickLength;
    if (!m_isOpen && !askedJustNow && mustAnswer() && !standsEngineStill())
        ask();
}

void PagePulse::ask()
{
    m_isOpen = true;
    m_ticks.start(tickLength);
    m_page.runJavaScript(u"1"_s, QWebEngineScript::ApplicationWorld,
                         [self = QPointer(this), number = ++m_question](const QVariant &) {
                             if (self)
                                 self->noteAnswer(number);
                         });
}

/// Ticks that the interface misses are not made up for.
void PagePulse::tick()
{
    if (!mustAnswer()) {
        beginAnew();
        return;
    }
    if (standsEngineStill()) {
        m_waited = 0;
        return;
    }
    if (m_isSilent)
        return;
    if (m_isOpen && ++m_waited >= longestTicks) {
        m_isSilent = true;
        emit fellSilent();
        return;
    }
    // Once more: an answer is lost where another page comes in between.
    ask();
}

void PagePulse::noteAnswer(int number)
{
    if (number <= m_void)
        return;
    beginAnew();
    emit answered();
}

void PagePulse::noteSilent()
{
    if (m_isSilent)
        return;
    m_isSilent = true;
    if (!m_isOpen)
        ask();
    emit fellSilent();
}

void PagePulse::beginAnew()
{
    m_void = m_question;
    m_waited = 0;
    m_isOpen = false;
    m_isSilent = false;
    m_ticks.start(untilAskedAgain);
}
