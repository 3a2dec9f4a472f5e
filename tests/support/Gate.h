#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <functional>

/// Stands before another server of this machine, and passes connections on to it: at once while it
/// is open, else when it opens. Not even a handshake gets through before.
class Gate : public QTcpServer {
public:
    explicit Gate(int port)
        : m_port(quint16(port))
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *client = nextPendingConnection())
                m_isOpen ? pass(client) : m_waiting.append(client);
        });
    }
    /// For the connections from now on.
    void open() { m_isOpen = true; }
    int waiting() const { return int(m_waiting.size()); }
    /// Those that wait go on.
    void release()
    {
        for (QTcpSocket *client : std::exchange(m_waiting, {}))
            pass(client);
    }

private:
    void pass(QTcpSocket *client) const
    {
        auto *server = new QTcpSocket(client);
        connect(server, &QTcpSocket::connected, client, [=] { server->write(client->readAll()); });
        connect(client, &QTcpSocket::readyRead, server, [=] {
            if (server->state() == QTcpSocket::ConnectedState)
                server->write(client->readAll());
        });
        connect(server, &QTcpSocket::readyRead, client, [=] { client->write(server->readAll()); });
        connect(server, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
        server->connectToHost(QHostAddress::LocalHost, m_port);
    }

    QList<QTcpSocket *> m_waiting;
    quint16 m_port;
    bool m_isOpen = false;
};
