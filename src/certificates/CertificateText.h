#pragma once

#include <QList>
#include <QString>
#include <utility>

class QSslCertificate;

/// What a certificate says, for the eye: every value is its maker's, and comes cut, on one line,
/// with what is not seen or turns the direction written out.
namespace CertificateText {
/// A value of a certificate, at most as long as a line can show.
QString safe(const QString &value);
/// A name for the certificate as a whole, and for who issued it.
QString subject(const QSslCertificate &certificate);
QString issuer(const QSslCertificate &certificate);
/// The hosts and IP addresses that the certificate is for: the first `most` of them, and how many
/// there are.
std::pair<QStringList, qsizetype> names(const QSslCertificate &certificate, int most);
/// Kind and length of its key.
QString key(const QSslCertificate &certificate);
/// How it was signed, as the libraries call it; empty where that is not known.
QString signature(const QSslCertificate &certificate);
/// Caption and value of all that a user can compare or look up.
QList<std::pair<QString, QString>> lines(const QSslCertificate &certificate);
}
