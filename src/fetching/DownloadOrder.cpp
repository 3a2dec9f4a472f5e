#include "DownloadOrder.h"

#include "DownloadList.h"
#include "WebPage.h"

DownloadOrder::DownloadOrder(const QString &id, QWebEngineProfile *profile)
    : m_id(id)
    , m_page(std::make_unique<WebPage>(profile))
{
    downloadList().setTransfer(id, this);
}

DownloadOrder::~DownloadOrder() = default;

void DownloadOrder::start()
{
    if (const Download *entry = downloadList().find(m_id))
        m_page->download(entry->address, entry->name);
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
