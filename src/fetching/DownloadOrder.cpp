#include "DownloadOrder.h"

#include "DownloadList.h"
#include "OrderRequests.h"
#include "WebPage.h"

#include <QUuid>
#include <QWebEngineDownloadRequest>
#include <QWidget>

DownloadOrder::DownloadOrder(const QString &id, QWebEngineProfile *profile)
    : m_id(id)
    , m_mark(QUuid::createUuid().toString(QUuid::Id128))
    , m_profile(profile)
{
    downloadList().setTransfer(id, this);
}

DownloadOrder::~DownloadOrder() = default;

void DownloadOrder::start()
{
    if (const Download *entry = downloadList().find(m_id))
        ask(entry->name, {});
}

/// Without a name of ours the engine tells the server's.
void DownloadOrder::startFor(const QUrl &page, QWidget *owner)
{
    m_asksForPlace = true;
    m_owner = owner;
    ask({}, page);
}

void DownloadOrder::ask(const QString &name, const QUrl &referrer)
{
    const Download *entry = downloadList().find(m_id);
    if (!entry)
        return;
    m_page = std::make_unique<WebPage>(m_profile);
    m_requests = new OrderRequests(m_page.get());
    m_requests->setReferrer(referrer);
    m_page->setUrlRequestInterceptor(m_requests);
    QUrl marked = entry->address;
    marked.setFragment(m_mark);
    m_page->download(marked, name);
}

/// A server that sends the engine on may take the mark away.
bool DownloadOrder::isFor(const QWebEngineDownloadRequest &request) const
{
    return request.url().fragment() == m_mark
        || (m_requests && request.url() == m_requests->last());
}

QUrl DownloadOrder::address(const QWebEngineDownloadRequest &request) const
{
    QUrl url = request.url();
    if (url.fragment() == m_mark)
        url.setFragment({});
    return url;
}

void DownloadOrder::cancel()
{
    end(Download::State::Cancelled);
}

/// Its address is all that there is of it, and enough.
void DownloadOrder::leave()
{
    end(Download::State::Unfinished);
}

void DownloadOrder::end(Download::State state)
{
    m_isCancelled = true;
    downloadList().change(m_id, [state](Download &download) {
        download.state = state;
        download.ended = QDateTime::currentDateTimeUtc();
    });
}
