#include "PageActivity.h"

#include "WebPage.h"

#include <QWebEngineScript>
#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// As long as an upload may take whose end is not told.
constexpr auto longestSending = 30min;
constexpr auto longestAnswer = 5s;
}

PageActivity::PageActivity(WebPage &page)
    : QObject(&page)
    , m_page(page)
{
    connect(&page, &WebPage::arrived, this, &PageActivity::beginAnew);
    m_patience.setSingleShot(true);
    m_patience.setInterval(longestAnswer);
    connect(&m_patience, &QTimer::timeout, this, [this] { finish(false); });
}

/// From Qt 6.5 on a page may be heard before the engine says that it is there: what was noted since
/// it was asked for may be its own.
void PageActivity::beginAnew()
{
    if (m_connectedAfter != m_page.navigation())
        m_hasConnection = false;
    if (m_sentAfter != m_page.navigation())
        m_sending.setRemainingTime(0);
    m_isOwed = false;
}

void PageActivity::noteConnection()
{
    m_hasConnection = true;
    m_connectedAfter = m_page.navigation();
}

void PageActivity::noteSending()
{
    m_sentAfter = m_page.navigation();
    m_sending.setRemainingTime(longestSending);
}

void PageActivity::noteWork(QObject *work)
{
    m_work.removeAll(nullptr);
    m_work.append(work);
}

bool PageActivity::isWorking() const
{
    return std::any_of(m_work.cbegin(), m_work.cend(),
                       [](const QPointer<QObject> &work) { return !work.isNull(); });
}

void PageActivity::askToGo(const std::function<bool()> &mayStill,
                           const std::function<void(bool)> &done)
{
    m_askers.append({mayStill, done});
    if (m_askers.size() > 1)
        return;
    m_patience.start();
    // The engine says yes in the name of a page that is busy for half a second.
    m_page.runJavaScript(u"1"_s, QWebEngineScript::ApplicationWorld,
                         [self = QPointer(this)](const QVariant &heard) {
                             // Nothing where the page goes.
                             if (self && heard.isValid())
                                 self->ask();
                         });
}

void PageActivity::ask()
{
    if (m_askers.isEmpty() || m_isOwed)
        return;
    const bool isWanted = std::any_of(m_askers.cbegin(), m_askers.cend(),
                                      [](const Asker &asker) { return asker.mayStill(); });
    if (!isWanted) {
        QTimer::singleShot(0, this, [this] { finish(false); });
        return;
    }
    m_isOwed = true;
    m_page.triggerAction(QWebEnginePage::RequestClose);
}

bool PageActivity::takeAnswer(bool mayGo)
{
    if (!std::exchange(m_isOwed, false))
        return false;
    QTimer::singleShot(0, this, [this, mayGo] { finish(mayGo); });
    return true;
}

void PageActivity::finish(bool mayGo)
{
    m_patience.stop();
    const auto askers = std::exchange(m_askers, {});
    for (const Asker &asker : askers)
        asker.done(mayGo);
}
