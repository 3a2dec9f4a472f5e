#include "CertificateExceptions.h"

#include <QCryptographicHash>
#include <algorithm>

namespace {
constexpr int securePort = 443;

QString hostOf(const QUrl &url)
{
    return url.host(QUrl::FullyEncoded).toLower();
}
}

CertificateExceptions &CertificateExceptions::instance()
{
    static CertificateExceptions exceptions;
    return exceptions;
}

CertificateExceptions::Exception
CertificateExceptions::exceptionFor(const CertificateFailure &failure)
{
    return {hostOf(failure.url), failure.url.port(securePort),
            failure.chain.first().digest(QCryptographicHash::Sha256), failure.problems};
}

void CertificateExceptions::add(const CertificateFailure &failure)
{
    if (failure.isOverridable && !covers(failure))
        m_known.append(exceptionFor(failure));
}

bool CertificateExceptions::covers(const CertificateFailure &failure) const
{
    return failure.isOverridable && !m_known.isEmpty() && m_known.contains(exceptionFor(failure));
}

bool CertificateExceptions::hasHost(const QUrl &url) const
{
    return std::any_of(m_known.begin(), m_known.end(),
                       [name = hostOf(url)](const Exception &each) { return each.host == name; });
}
