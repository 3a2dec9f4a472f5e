#include "ConnectionCheck.h"

#include "Language.h"

#include <QLocale>
#include <QSslCertificate>
#include <QSslCipher>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
constexpr int securePort = 443;
/// Milliseconds.
constexpr int longestWait = 15'000;

QString text(const char *key, const QString &english)
{
    return languageText(u"PageProperties"_s, QString::fromLatin1(key), english);
}

QString described(const QSslCertificate &certificate)
{
    const QLocale locale;
    return text("strCertificate", u"%1, issued by %2, valid from %3 to %4"_s)
        .arg(certificate.subjectDisplayName(), certificate.issuerDisplayName(),
             locale.toString(certificate.effectiveDate().date(), QLocale::ShortFormat),
             locale.toString(certificate.expiryDate().date(), QLocale::ShortFormat));
}
}

void ConnectionCheck::ask(const QUrl &url)
{
    auto *socket = new QSslSocket(this);
    connect(socket, &QSslSocket::sslErrors, this, [this, socket] { answerFrom(*socket); });
    connect(socket, &QSslSocket::encrypted, this, [this, socket] { answerFrom(*socket); });
    connect(socket, &QSslSocket::errorOccurred, this,
            [this, socket] { answerFailure(socket->errorString()); });
    QTimer::singleShot(longestWait, this,
                       [this] { answerFailure(text("strTimeOut", u"it did not answer"_s)); });
    socket->connectToHostEncrypted(url.host(), quint16(url.port(securePort)));
}

void ConnectionCheck::answerFrom(const QSslSocket &socket)
{
    QStringList lines{text("strOwnConnection",
                           u"As the server shows them now to a connection of "
                           u"this window's own:"_s)};
    const QList<QSslCertificate> chain = socket.peerCertificateChain();
    for (const QSslCertificate &certificate : chain)
        lines.append(described(certificate));
    const QList<QSslError> errors = socket.sslHandshakeErrors();
    for (const QSslError &error : errors)
        lines.append(error.errorString());
    const QSslCipher cipher = socket.sessionCipher();
    QString protocol = text("strEncrypted", u"Encrypted"_s);
    if (!cipher.isNull())
        protocol += u", "_s + cipher.protocolString() + u", "_s + cipher.name();
    answer(protocol, lines.join(u'\n'));
}

void ConnectionCheck::answerFailure(const QString &reason)
{
    answer(text("strEncrypted", u"Encrypted"_s),
           text("strNoCertificates", u"The server could not be asked: %1"_s).arg(reason));
}

void ConnectionCheck::answer(const QString &protocol, const QString &chain)
{
    if (!std::exchange(m_answered, true))
        emit answered(protocol, chain);
}
