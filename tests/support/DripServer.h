#pragma once

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

/// A server of one file that sends the first half of it at once and the rest when the test says so.
/// It answers range requests, for which it has all.
class DripServer : public QTcpServer {
public:
    explicit DripServer(const QByteArray &body)
        : m_body(body)
    {
        connect(this, &QTcpServer::newConnection, this, &DripServer::take);
        listen(QHostAddress::LocalHost);
    }

    QString url(const QString &name) const
    {
        return QStringLiteral("http://127.0.0.1:%1/%2").arg(serverPort()).arg(name);
    }
    /// How many wait for their other half.
    int waiting() const { return int(m_waiting.size()); }
    void finish()
    {
        for (const QPointer<QTcpSocket> &socket : std::as_const(m_waiting)) {
            if (socket)
                socket->write(m_body.mid(m_body.size() / 2));
        }
        m_waiting.clear();
    }

private:
    void take()
    {
        QTcpSocket *socket = nextPendingConnection();
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            const QByteArray request = socket->readAll().toLower();
            const qsizetype range = request.indexOf("range: bytes=");
            if (range < 0)
                answerWhole(*socket);
            else
                answerPart(*socket,
                           request.mid(range + 13, request.indexOf('\r', range) - range - 13));
        });
    }
    void answerWhole(QTcpSocket &socket)
    {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/x-parcel\r\nETag: \"1\"\r\n"
                     "Accept-Ranges: bytes\r\nContent-Length: "
                     + QByteArray::number(m_body.size()) + "\r\n\r\n");
        socket.write(m_body.left(m_body.size() / 2));
        m_waiting.append(&socket);
    }
    void answerPart(QTcpSocket &socket, const QByteArray &range) const
    {
        const QList<QByteArray> ends = range.split('-');
        const qsizetype first = ends.value(0).toLongLong();
        const qsizetype last =
            ends.value(1).isEmpty() ? m_body.size() - 1 : ends.value(1).toLongLong();
        socket.write("HTTP/1.1 206 Partial Content\r\nContent-Type: application/x-parcel\r\n"
                     "ETag: \"1\"\r\nContent-Length: "
                     + QByteArray::number(last - first + 1) + "\r\nContent-Range: bytes "
                     + QByteArray::number(first) + '-' + QByteArray::number(last) + '/'
                     + QByteArray::number(m_body.size()) + "\r\n\r\n");
        socket.write(m_body.mid(first, last - first + 1));
    }

    QByteArray m_body;
    QList<QPointer<QTcpSocket>> m_waiting;
};
