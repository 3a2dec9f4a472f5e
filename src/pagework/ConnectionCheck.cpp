#include "ConnectionCheck.h"

#include "CertificateText.h"
#include "Language.h"
#include "Texts.h"

#include <QSslCertificate>
#include <QSslCipher>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
constexpr int securePort = 443;
/// Milliseconds.
constexpr int longestWait = 15'000;
constexpr qsizetype longestChain = 20;

constexpr Texts<"PageProperties"> texts;

QString described(const QSslCertificate &certificate)
{
    const QLocale locale = languageLocale();
    return texts.at<"strCertificate", "%1, issued by %2, valid from %3 to %4">().arg(
        CertificateText::subject(certificate), CertificateText::issuer(certificate),
        locale.toString(certificate.effectiveDate().date(), QLocale::ShortFormat),
        locale.toString(certificate.expiryDate().date(), QLocale::ShortFormat));
}
}

void ConnectionCheck::ask(const QUrl &url)
{
    m_socket = new QSslSocket(this);
    connect(m_socket, &QSslSocket::sslErrors, this, &ConnectionCheck::answerFromServer);
    connect(m_socket, &QSslSocket::encrypted, this, &ConnectionCheck::answerFromServer);
    connect(m_socket, &QSslSocket::errorOccurred, this,
            [this] { answerFailure(m_socket->errorString()); });
    QTimer::singleShot(longestWait, this,
                       [this] { answerFailure(texts.at<"strTimeOut", "it did not answer">()); });
    m_socket->connectToHostEncrypted(url.host(), quint16(url.port(securePort)));
}

void ConnectionCheck::answerFromServer()
{
    QStringList lines{texts.at<"strOwnConnection",
                               "As the server shows them now to a connection of "
                               "this window's own:">()};
    m_chain = m_socket->peerCertificateChain();
    const QList<QSslError> errors = m_socket->sslHandshakeErrors();
    for (const QSslError &error : errors)
        m_problems.append(error.errorString());
    const QList<QSslCertificate> shown = m_chain.first(qMin(longestChain, m_chain.size()));
    for (const QSslCertificate &certificate : shown)
        lines.append(described(certificate));
    lines.append(m_problems);
    const QSslCipher cipher = m_socket->sessionCipher();
    QString protocol = texts.at<"strEncrypted", "Encrypted">();
    if (!cipher.isNull())
        protocol += u", "_s + cipher.protocolString() + u", "_s + cipher.name();
    answer(protocol, lines.join(u'\n'));
}

void ConnectionCheck::answerFailure(const QString &reason)
{
    answer(texts.at<"strEncrypted", "Encrypted">(),
           texts.at<"strNoCertificates", "The server could not be asked: %1">().arg(reason));
}

void ConnectionCheck::answer(const QString &protocol, const QString &chain)
{
    if (std::exchange(m_answered, true))
        return;
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->deleteLater();
    }
    emit answered(protocol, chain);
}
