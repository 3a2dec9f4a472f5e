#include "PageIndicators.h"

#include "CookiePolicy.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

PageIndicators::PageIndicators(QObject *parent)
    : QObject(parent)
{
    connect(&CookiePolicy::instance(), &CookiePolicy::refused, this, [this](const QString &host) {
        if (m_impacted || host.isEmpty() || host != m_url.host())
            return;
        m_impacted = true;
        emit privacyImpacted(true);
    });
}

void PageIndicators::watch(WebPage *page)
{
    connect(page, &WebPage::mixedContentSeen, this, [this] {
        m_mixed = true;
        refresh();
    });
}

void PageIndicators::reset(const QUrl &url)
{
    m_url = url;
    m_arrived = false;
    m_mixed = false;
    refresh();
    if (std::exchange(m_impacted, false))
        emit privacyImpacted(false);
}

void PageIndicators::setArrived()
{
    m_arrived = true;
    refresh();
}

void PageIndicators::refresh()
{
    // A certificate that is not valid never gets as far as a page: it is always refused.
    const bool secure = m_arrived && !m_mixed && m_url.scheme() == "https"_L1;
    if (std::exchange(m_secure, secure) != secure)
        emit secureChanged(secure);
}
