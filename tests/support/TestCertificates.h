#pragma once

#include <QSslConfiguration>
#include <QString>

/// An authority of a test's own and a server certificate that it signed, made with the system's
/// tools. The engine trusts the authority once it is in the certificate store of the home folder,
/// which it reads at its first https page.
namespace TestCertificates {
/// Makes both in `folder` and puts the authority into the store of `home`; says what failed, and
/// nothing when all went well.
QString make(const QString &folder, const QString &home);
/// The server certificate made in `folder`, for "localhost" and 127.0.0.1.
QSslConfiguration server(const QString &folder);
}
