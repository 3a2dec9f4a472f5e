#pragma once

#include <QObject>
#include <QPointer>
#include <QSslCertificate>
#include <QSslSocket>

class QUrl;

/// Asks a server of encrypted pages for its certificates, over a connection of its own: the engine
/// tells nothing of those that its pages came over. That connection ends with the answer.
class ConnectionCheck : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    void ask(const QUrl &url);
    /// The certificates, the server's own first, and what is wrong with them; both empty until the
    /// answer, and where there was none.
    const QList<QSslCertificate> &chain() const { return m_chain; }
    const QStringList &problems() const { return m_problems; }

signals:
    /// Once: what to show of the connection, and of its chain of certificates.
    void answered(const QString &protocol, const QString &chain);

private:
    void answerFromServer();
    void answerFailure(const QString &reason);
    void answer(const QString &protocol, const QString &chain);

    QPointer<QSslSocket> m_socket;
    QList<QSslCertificate> m_chain;
    QStringList m_problems;
    bool m_answered = false;
};
