#pragma once

#include <QSslConfiguration>
#include <QStringList>

/// An authority of a test's own and a server certificate that it signed, made with the system's
/// tools. The engine trusts the authority once it is in the certificate store of the home folder,
/// which it reads at its first https page.
namespace TestCertificates {
/// Makes both in `folder` and puts the authority into the store of `home`; says what failed, and
/// nothing when all went well.
QString make(const QString &folder, const QString &home);
/// The server certificate made in `folder`, for "localhost" and 127.0.0.1.
QSslConfiguration server(const QString &folder);

enum class Signer { Authority, Stranger, Itself };

/// What a server certificate is to be like.
struct Shape {
    Signer signer = Signer::Authority;
    /// As the openssl program takes them: "DNS:...", "IP:...".
    QStringList names{QStringLiteral("DNS:localhost"), QStringLiteral("IP:127.0.0.1")};
    /// Years from now.
    int from = 0;
    int until = 1;
    QString digest = QStringLiteral("sha256");
    /// Of its RSA key. The libraries here refuse less than 2048 unless `allowWeakServers` was
    /// called.
    int bits = 2048;
    QString subject = QStringLiteral("/CN=localhost");
};
/// A server with such a certificate; `folder` is one that `make` was called for.
QSslConfiguration shaped(const QString &folder, const Shape &shape);
/// Lets this process be a server with a weak certificate; before anything else in `main`.
void allowWeakServers(const QString &folder);
}
