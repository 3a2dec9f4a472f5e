#include "SlowServer.h"

#include <QTcpSocket>
#include <algorithm>
#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace {
constexpr char rangeHeader[] = "\r\nRange: ";

QByteArray rangeIn(const QByteArray &head)
{
    const qsizetype at = head.indexOf(rangeHeader);
    if (at < 0)
        return {};
    const qsizetype from = at + qsizetype(sizeof rangeHeader) - 1;
    return head.sliced(from, head.indexOf("\r\n", from) - from);
}
}

SlowServer::SlowServer()
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                m_sent.remove(socket);
                socket->deleteLater();
            });
        }
    });
    m_server.listen(QHostAddress::LocalHost);
}

/// Its connections go with their server, and would tell of that.
SlowServer::~SlowServer()
{
    const QList<QTcpSocket *> all = m_server.findChildren<QTcpSocket *>();
    for (QTcpSocket *socket : all)
        socket->disconnect(this);
}

QString SlowServer::url() const
{
    return u"http://127.0.0.1:%1/file.bin"_s.arg(m_server.serverPort());
}

QByteArray SlowServer::body()
{
    QByteArray bytes(size, Qt::Uninitialized);
    constexpr qint64 prime = 251;
    for (qint64 i = 0; i < size; ++i)
        bytes[i] = char(i % prime);
    return bytes;
}

void SlowServer::send(qint64 bytes)
{
    m_limit = std::min(m_limit + bytes, size);
    const QList<QTcpSocket *> all = m_sent.keys();
    for (QTcpSocket *socket : all)
        write(socket);
}

void SlowServer::cut()
{
    const QList<QTcpSocket *> all = m_sent.keys();
    for (QTcpSocket *socket : all) {
        // Not as one that ends its message too early: as one that is gone.
        const linger gone = {1, 0};
        ::setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &gone, sizeof gone);
        socket->abort();
    }
}

void SlowServer::read(QTcpSocket *socket)
{
    const QByteArray head = socket->peek(socket->bytesAvailable());
    if (!head.contains("\r\n\r\n") || m_sent.contains(socket))
        return;
    socket->readAll();
    if (head.contains(" /file.bin "))
        answer(socket, rangeIn(head));
    else
        socket->abort();
}

void SlowServer::answer(QTcpSocket *socket, const QByteArray &range)
{
    m_requests.append(range);
    qint64 from = 0;
    QByteArray head = "HTTP/1.1 200 OK\r\n";
    if (m_hasRanges && range.startsWith("bytes=")) {
        from = range.sliced(6).split('-').first().toLongLong();
        head = "HTTP/1.1 206 Part\r\nContent-Range: bytes " + QByteArray::number(from) + '-'
            + QByteArray::number(size - 1) + '/' + QByteArray::number(size) + "\r\n";
    }
    if (m_hasRanges)
        head += "Accept-Ranges: bytes\r\nETag: \"one\"\r\n";
    // Of a type that is not judged by its first bytes.
    socket->write(head
                  + "Content-Type: application/x-parcel\r\nConnection: close\r\nContent-Length: "
                  + QByteArray::number(size - from) + "\r\n\r\n");
    m_sent.insert(socket, from);
    write(socket);
}

void SlowServer::write(QTcpSocket *socket)
{
    qint64 &sent = m_sent[socket];
    if (sent < m_limit)
        socket->write(body().sliced(sent, m_limit - sent));
    sent = std::max(sent, m_limit);
    socket->flush();
    if (sent >= size)
        socket->disconnectFromHost();
}
