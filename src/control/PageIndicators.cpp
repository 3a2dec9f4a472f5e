#include "PageIndicators.h"

#include "CertificateExceptions.h"
#include "CookiePolicy.h"
#include "PageCertificates.h"
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
    // Which page it is for is not known for sure while another is on its way.
    connect(&page->certificates(), &PageCertificates::unprovenPartSeen, this, [this] {
        m_hasUnprovenPart = true;
        m_hasUnprovenPartEarly = !m_expected.isEmpty();
        refresh();
    });
}

void PageIndicators::expect(const QUrl &url)
{
    m_expected = url;
    m_impactedEarly = false;
    m_hasUnprovenPartEarly = false;
}

void PageIndicators::reset(const QUrl &url, bool arrived)
{
    m_url = url;
    m_arrived = arrived;
    m_mixed = false;
    m_hasUnprovenPart = std::exchange(m_hasUnprovenPartEarly, false);
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
    // A certificate that is not valid gets as far as a page only where the user let it pass.
    const bool encrypted = m_arrived && m_url.scheme() == "https"_L1;
    const bool unproven =
        encrypted && (m_hasUnprovenPart || CertificateExceptions::instance().hasHost(m_url));
    const bool secure = encrypted && !m_mixed && !unproven;
    const bool wasUnproven = std::exchange(m_unproven, unproven);
    if (std::exchange(m_secure, secure) != secure)
        emit secureChanged(secure);
    if (wasUnproven != unproven)
        emit unprovenChanged(unproven);
}
