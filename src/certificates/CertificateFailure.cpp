#include "CertificateFailure.h"

#include <QDateTime>

namespace {
/// What the engine calls wrong dates, by the first certificate that has such.
CertificateProblem precise(CertificateProblem problem, const QList<QSslCertificate> &chain)
{
    if (problem != CertificateProblem::Dates)
        return problem;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const QSslCertificate &each : chain) {
        if (each.expiryDate() < now)
            return CertificateProblem::Expired;
        if (each.effectiveDate() > now)
            return CertificateProblem::NotYetValid;
    }
    return problem;
}
}

CertificateFailure::CertificateFailure(const QUrl &address, CertificateProblem reason,
                                       bool mayBePassed, const QList<QSslCertificate> &certificates)
    : url(address)
    , problem(precise(reason, certificates))
    , problems{problem}
    , isOverridable(mayBePassed && !certificates.isEmpty() && !certificates.first().isNull())
    , chain(certificates)
{
    if (chain.isEmpty())
        return;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (chain.first().expiryDate() < now)
        problems.insert(CertificateProblem::Expired);
    if (chain.first().effectiveDate() > now)
        problems.insert(CertificateProblem::NotYetValid);
}
