#include "PageActivity.h"

#include "WebPage.h"

#include <algorithm>
#include <chrono>
#include <utility>

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
    connect(&page, &WebPage::arrived, this, [this] {
        m_hasConnection = false;
        m_sending.setRemainingTime(0);
    });
    m_patience.setSingleShot(true);
    m_patience.setInterval(longestAnswer);
    connect(&m_patience, &QTimer::timeout, this, [this] { finish(false); });
}

void PageActivity::noteSending()
{
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

void PageActivity::askToGo(const std::function<void(bool)> &done)
{
    m_done = done;
    ++m_owed;
    m_patience.start();
    m_page.triggerAction(QWebEnginePage::RequestClose);
}

bool PageActivity::takeAnswer(bool mayGo)
{
    if (m_owed == 0)
        return false;
    --m_owed;
    QTimer::singleShot(0, this, [this, mayGo] { finish(mayGo); });
    return true;
}

void PageActivity::finish(bool mayGo)
{
    m_patience.stop();
    if (const auto done = std::exchange(m_done, {}))
        done(mayGo);
}
