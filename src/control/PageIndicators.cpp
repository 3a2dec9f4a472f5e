#include "PageIndicators.h"

#include "CookiePolicy.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

PageIndicators::PageIndicators(QObject *parent)
    : QObject(parent)
{
    connect(&CookiePolicy::instance(), &CookiePolicy::refused, this, &PageIndicators::noteRefusal);
}

void PageIndicators::noteRefusal(const QString &host)
{
    if (host.isEmpty())
        return;
    if (host == m_url.host()) {
        if (!std::exchange(m_impacted, true))
            emit privacyImpacted(true);
    } else if (host == m_expected.host()) {
        m_impactedEarly = true;
    }
}

void PageIndicators::watch(WebPage *page)
{
    connect(page, &WebPage::mixedContentSeen, this, [this] {
        m_mixed = true;
        refresh();
    });
}

void PageIndicators::expect(const QUrl &url)
{
    m_expected = url;
    m_impactedEarly = false;
}

void PageIndicators::reset(const QUrl &url, bool arrived)
{
    m_url = url;
    m_arrived = arrived;
    m_mixed = false;
    refresh();
    const bool impacted = std::exchange(m_impactedEarly, false);
    m_expected.clear();
    if (std::exchange(m_impacted, impacted) != impacted)
        emit privacyImpacted(impacted);
}

void PageIndicators::distrust()
{
    m_arrived = false;
    refresh();
}

void PageIndicators::refresh()
{
    // A certificate that is not valid never gets as far as a page: it is always refused.
    const bool secure = m_arrived && !m_mixed && m_url.scheme() == "https"_L1;
    if (std::exchange(m_secure, secure) != secure)
        emit secureChanged(secure);
}
