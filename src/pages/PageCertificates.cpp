#include "PageCertificates.h"

#include "CertificateExceptions.h"
#include "Log.h"
#include "PrivateProfiles.h"
#include "ShownAddress.h"
#include "WebPage.h"
#include "Yield.h"

#include <QWebEngineCertificateError>
#include <QWebEngineProfile>

namespace {
using Engine = QWebEngineCertificateError;

/// Newer engines may know more of them.
CertificateProblem problemOf(Engine::Type type)
{
    switch (type) {
    case Engine::CertificateCommonNameInvalid:
    case Engine::CertificateNonUniqueName:
    case Engine::CertificateNameConstraintViolation:
        return CertificateProblem::OtherName;
    case Engine::CertificateDateInvalid:
        return CertificateProblem::Dates;
    case Engine::CertificateAuthorityInvalid:
        return CertificateProblem::UnknownIssuer;
    case Engine::CertificateSymantecLegacy:
    case Engine::CertificateKnownInterceptionBlocked:
        return CertificateProblem::DistrustedIssuer;
    case Engine::CertificateRevoked:
        return CertificateProblem::Revoked;
    case Engine::CertificateNoRevocationMechanism:
    case Engine::CertificateUnableToCheckRevocation:
        return CertificateProblem::RevocationUnknown;
    case Engine::CertificateWeakSignatureAlgorithm:
    case Engine::CertificateWeakKey:
        return CertificateProblem::Weak;
    case Engine::SslObsoleteVersion:
        return CertificateProblem::OldEncryption;
    case Engine::SslPinnedKeyNotInCertificateChain:
        return CertificateProblem::NotPinned;
    case Engine::CertificateTransparencyRequired:
        return CertificateProblem::Unlisted;
    default:
        return CertificateProblem::Malformed;
    }
}

/// The engine's number for a certificate that it cannot even read, so that it asks nobody.
constexpr int unreadable = -167;

/// The engine's numbers for errors of the network.
bool isOfCertificate(int error)
{
    return error == Engine::SslPinnedKeyNotInCertificateChain || (error <= -200 && error > -300);
}

/// Once for a site: a page may ask in a loop.
void logRefused(const QUrl &url)
{
    constexpr qsizetype most = 100;
    static QSet<QString> logged;
    const QString site = shownSite(url);
    if (logged.size() >= most || logged.contains(site))
        return;
    logged.insert(site);
    qCWarning(lcEngine) << "certificate refused, and nobody asked: a part of a page from" << site;
}

bool isSamePage(const QUrl &one, const QUrl &other)
{
    constexpr auto beside = QUrl::RemoveFragment | QUrl::RemoveUserInfo;
    return one.adjusted(beside) == other.adjusted(beside);
}
}

PageCertificates::PageCertificates(WebPage &page)
    : QObject(&page)
    , m_page(page)
{
    connect(&page, &QWebEnginePage::certificateError, this, [this](const Engine &error) {
        const EngineCallbackScope scope;
        answer(error);
    });
}

CertificateExceptions &PageCertificates::exceptions(QWebEngineProfile *profile)
{
    if (PrivateProfiles::numberOf(profile) == 0)
        return CertificateExceptions::instance();
    auto *own = profile->findChild<CertificateExceptions *>(QString(), Qt::FindDirectChildrenOnly);
    return own ? *own : *new CertificateExceptions(profile);
}

CertificateExceptions &PageCertificates::exceptions() const
{
    return exceptions(m_page.profile());
}

/// A part of the page with the very address of the page on its way comes here, too, with the
/// certificate of the same server; whether the page itself came is not decided by it.
void PageCertificates::answer(QWebEngineCertificateError error)
{
    const CertificateFailure failure(error.url(), problemOf(error.type()), error.isOverridable(),
                                     error.certificateChain());
    if (exceptions().covers(failure)) {
        error.acceptCertificate();
        return;
    }
    error.rejectCertificate();
    if (m_page.isOnItsWay(failure.url))
        m_failure = failure;
    else if (!m_page.isPrivate())
        logRefused(failure.url);
}

std::optional<CertificateFailure> PageCertificates::failureAt(const QUrl &url, int error) const
{
    if (error == unreadable)
        return CertificateFailure(url, CertificateProblem::Malformed, false, {});
    const bool isThis = m_failure && isOfCertificate(error) && isSamePage(m_failure->url, url);
    return isThis ? m_failure : std::nullopt;
}
