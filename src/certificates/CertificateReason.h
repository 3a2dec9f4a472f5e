#pragma once

#include <QStringList>

struct CertificateFailure;

/// Why a server could not prove who it is, in the user's language. Names that its certificate
/// gives are cut and escaped.
namespace CertificateReason {
/// One sentence for each thing that is wrong, the weightiest first.
QStringList reasonsFor(const CertificateFailure &failure);
/// What could be behind it.
QString causeOf(const CertificateFailure &failure);
/// Why the user cannot go on; empty where he can.
QString whyNoWay(const CertificateFailure &failure);
}
