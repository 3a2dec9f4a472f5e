#pragma once

#include <QObject>

class QSslSocket;
class QUrl;

/// Asks a server of encrypted pages for its certificates, over a connection of its own: the engine
/// tells nothing of those that its pages came over.
class ConnectionCheck : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    void ask(const QUrl &url);

signals:
    /// Once: what to show of the connection, and of its chain of certificates.
    void answered(const QString &protocol, const QString &chain);

private:
    void answerFrom(const QSslSocket &socket);
    void answerFailure(const QString &reason);
    void answer(const QString &protocol, const QString &chain);

    bool m_answered = false;
};
