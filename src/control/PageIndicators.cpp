#include "PageIndicators.h"

#include "CertificateExceptions.h"
#include "CookiePolicy.h"
#include "PageCertificates.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

namespace {
/// A page that asks more is unproven as soon as anything is let pass.
constexpr qsizetype mostHosts = 1000;
}

PageIndicators::PageIndicators(QObject *parent)
    : QObject(parent)
{
    connect(&CookiePolicy::instance(), &CookiePolicy::refused, this, &PageIndicators::noteRefusal);
    useExceptions(CertificateExceptions::instance());
}

void PageIndicators::useExceptions(CertificateExceptions &exceptions)
{
    if (m_exceptions == &exceptions)
        return;
    if (m_exceptions)
        m_exceptions->disconnect(this);
    m_exceptions = &exceptions;
    connect(m_exceptions, &CertificateExceptions::changed, this, &PageIndicators::refresh);
}

/// The engine names the host alone: where a page follows another of its host, either may have
/// asked.
void PageIndicators::noteRefusal(const QString &host)
{
    if (host.isEmpty())
        return;
    if (host == m_expected.host())
        m_impactedEarly = true;
    if (host == m_url.host() && !std::exchange(m_impacted, true))
        emit privacyImpacted(true);
}

void PageIndicators::watch(WebPage *page)
{
    useExceptions(page->certificates().exceptions());
    connect(page, &WebPage::mixedContentSeen, this, [this] {
        m_mixed = true;
        refresh();
    });
    connect(&page->certificates(), &PageCertificates::partRequested, this,
            &PageIndicators::notePart);
}

/// What the page on its way asks for may be seen before the page is told of.
void PageIndicators::notePart(const QUrl &url, const QUrl &sender)
{
    const QString host = CertificateExceptions::hostOf(url);
    const bool mayBeEarly =
        !m_expected.isEmpty() && (sender.host().isEmpty() || sender.host() == m_expected.host());
    if (mayBeEarly && m_partHostsEarly.size() < mostHosts)
        m_partHostsEarly.insert(host);
    if (m_partHosts.size() >= mostHosts || m_partHosts.contains(host))
        return;
    m_partHosts.insert(host);
    refresh();
}

void PageIndicators::expect(const QUrl &url)
{
    m_expected = url;
    m_impactedEarly = false;
    m_partHostsEarly.clear();
}

void PageIndicators::reset(const QUrl &url, bool arrived)
{
    m_url = url;
    m_arrived = arrived;
    m_mixed = false;
    m_partHosts = std::exchange(m_partHostsEarly, {});
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

/// A certificate that is not valid gets as far as a page only where the user let it pass.
bool PageIndicators::isUnprovenByNow() const
{
    return m_exceptions
        && (m_exceptions->hasHost(m_url) || m_exceptions->hasOneOf(m_partHosts)
            || (m_partHosts.size() >= mostHosts && !m_exceptions->isEmpty()));
}

void PageIndicators::refresh()
{
    const bool encrypted = m_arrived && m_url.scheme() == "https"_L1;
    const bool unproven = encrypted && isUnprovenByNow();
    const bool secure = encrypted && !m_mixed && !unproven;
    const bool wasUnproven = std::exchange(m_unproven, unproven);
    if (std::exchange(m_secure, secure) != secure)
        emit secureChanged(secure);
    if (wasUnproven != unproven)
        emit unprovenChanged(unproven);
}
