#include "CertificateExceptions.h"

#include <QCryptographicHash>
#include <algorithm>

CertificateExceptions &CertificateExceptions::instance()
{
    static CertificateExceptions exceptions;
    return exceptions;
}

QString CertificateExceptions::hostOf(const QUrl &url)
{
    return url.host(QUrl::FullyEncoded).toLower();
}

CertificateExceptions::Exception
CertificateExceptions::exceptionFor(const CertificateFailure &failure)
{
    return {hostOf(failure.url), failure.chain.first().digest(QCryptographicHash::Sha256),
            failure.problems};
}

void CertificateExceptions::add(const CertificateFailure &failure)
{
    if (!failure.isOverridable || covers(failure))
        return;
    m_known.append(exceptionFor(failure));
    emit changed();
}

bool CertificateExceptions::covers(const CertificateFailure &failure) const
{
    return failure.isOverridable && !m_known.isEmpty() && m_known.contains(exceptionFor(failure));
}

bool CertificateExceptions::hasHost(const QUrl &url) const
{
    return !m_known.isEmpty() && hasOneOf({hostOf(url)});
}

bool CertificateExceptions::hasOneOf(const QSet<QString> &hosts) const
{
    return std::any_of(m_known.begin(), m_known.end(),
                       [&hosts](const Exception &each) { return hosts.contains(each.host); });
}

void CertificateExceptions::clear()
{
    m_known.clear();
    emit changed();
}
