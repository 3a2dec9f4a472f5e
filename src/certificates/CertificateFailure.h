#pragma once

#include <QList>
#include <QSet>
#include <QSslCertificate>
#include <QUrl>

/// What is wrong with the certificate of a server, as a user can make something of it.
enum class CertificateProblem {
    /// Its issuer is not known here; the certificate's own key may be the issuer's.
    UnknownIssuer,
    /// Its issuer is known, and not trusted any longer.
    DistrustedIssuer,
    Expired,
    NotYetValid,
    /// A date in its chain is not right.
    Dates,
    OtherName,
    Revoked,
    /// Nobody could be asked whether it was revoked.
    RevocationUnknown,
    /// Its key, its signature or the encryption that its server offers is too weak.
    Weak,
    OldEncryption,
    /// It is none of those that the site is known by.
    NotPinned,
    /// It is missing from the public lists.
    Unlisted,
    Malformed,
};

/// A page that was refused because its server could not prove who it is. All but the address is
/// the server's word.
struct CertificateFailure {
    /// Of `chain`'s first certificate at this moment, with what its dates say of themselves.
    CertificateFailure(const QUrl &address, CertificateProblem reason, bool mayBePassed,
                       const QList<QSslCertificate> &certificates);

    QUrl url;
    /// What weighs most, as the engine has it.
    CertificateProblem problem;
    /// All that is known to be wrong.
    QSet<CertificateProblem> problems;
    /// The user may go on all the same.
    bool isOverridable;
    /// The server's own certificate first, then each one's issuer.
    QList<QSslCertificate> chain;
};
