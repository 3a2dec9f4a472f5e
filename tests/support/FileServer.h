#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <memory>

/// A server of one file that a test can make slow, cut, change and let lie. It sends as fast as it
/// is told to, in the order of the test's event loop.
class FileServer : public QObject {
    Q_OBJECT

public:
    struct Request {
        QByteArray path;
        /// Names in lower case.
        QHash<QByteArray, QByteArray> headers;
    };

    FileServer()
    {
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { hear(socket); });
        });
        m_server.listen(QHostAddress::LocalHost);
    }

    QUrl url(const QString &path = QStringLiteral("/file.bin")) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
    }
    /// Those whose ranges are not a single byte's.
    QList<Request> requests() const { return m_requests; }
    QByteArray lastRange() const
    {
        return m_requests.isEmpty() ? QByteArray() : m_requests.last().headers.value("range");
    }
    int probes() const { return int(m_probes.size()); }
    Request lastProbe() const { return m_probes.value(m_probes.size() - 1); }
    void forget() { m_requests.clear(); }
    /// Sends what was held back by `stopAfter`.
    void goOn()
    {
        stopAfter = -1;
        for (const auto &[socket, held] : std::exchange(m_held, {})) {
            if (socket) {
                socket->write(held);
                socket->disconnectFromHost();
            }
        }
    }
    /// Hangs up on all.
    void cut()
    {
        const QList<QTcpSocket *> sockets = m_server.findChildren<QTcpSocket *>();
        for (QTcpSocket *socket : sockets)
            socket->abort();
    }

    QByteArray bytes;
    QByteArray etag = "\"one\"";
    QByteArray lastModified = "Mon, 01 Jan 2024 00:00:00 GMT";
    QByteArray date;
    /// Instead of what is right, where they are not empty.
    QByteArray contentRange;
    QList<QPair<QByteArray, QByteArray>> headers;
    /// Other than 0: this and no bytes of the file.
    int status = 0;
    bool knowsRanges = true;
    /// Takes each range for one of the file as it is.
    bool ignoresCondition = false;
    bool saysLength = true;
    /// Hears, and says nothing.
    bool isSilent = false;
    /// Bytes of the body after which it waits for `goOn`; -1: none.
    qint64 stopAfter = -1;
    /// Bytes of the body after which it hangs up; -1: none.
    qint64 cutAfter = -1;

private:
    void hear(QTcpSocket *socket)
    {
        QByteArray &text = m_heard[socket];
        text += socket->readAll();
        const qsizetype end = text.indexOf("\r\n\r\n");
        if (end < 0)
            return;
        Request request;
        const QList<QByteArray> lines = text.first(end).split('\n');
        request.path = lines.first().split(' ').value(1);
        for (const QByteArray &line : lines.sliced(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
        }
        m_heard.remove(socket);
        const bool isProbe = request.headers.value("range") == "bytes=0-0";
        if (isProbe)
            m_probes.append(request);
        else
            m_requests.append(request);
        if (!isSilent)
            answer(socket, request, isProbe);
    }

    void answer(QTcpSocket *socket, const Request &request, bool isProbe)
    {
        const QByteArray range = request.headers.value("range");
        const QByteArray condition = request.headers.value("if-range");
        const bool isSame = ignoresCondition || condition.isEmpty() || condition == etag
            || condition == lastModified;
        const bool isPart = knowsRanges && isSame && range.startsWith("bytes=");
        const qint64 first = isPart ? range.sliced(6).split('-').first().toLongLong() : 0;
        const qint64 last = isProbe ? 0 : bytes.size() - 1;
        QByteArray body = status != 0 ? QByteArray()
            : isPart                  ? bytes.mid(first, last - first + 1)
                                      : bytes;
        int code = status != 0 ? status : isPart ? 206 : 200;
        QByteArray where = "bytes " + QByteArray::number(first) + '-' + QByteArray::number(last)
            + '/' + QByteArray::number(bytes.size());
        if (isPart && first >= bytes.size() && status == 0) {
            code = 416;
            where = "bytes */" + QByteArray::number(bytes.size());
        }
        send(socket, headOf(code, isPart ? where : QByteArray(), body.size()), body, isProbe);
    }

    QByteArray headOf(int code, const QByteArray &where, qint64 length) const
    {
        QByteArray head = "HTTP/1.1 " + QByteArray::number(code)
            + " Answer\r\nConnection: close\r\n"
              "Content-Type: application/octet-stream\r\n";
        const auto add = [&head](const QByteArray &name, const QByteArray &value) {
            if (!value.isEmpty())
                head += name + ": " + value + "\r\n";
        };
        if (saysLength)
            add("Content-Length", QByteArray::number(length));
        add("Content-Range", where.isEmpty() || contentRange.isEmpty() ? where : contentRange);
        add("ETag", etag);
        add("Last-Modified", lastModified);
        add("Date", date);
        for (const auto &[name, value] : headers)
            add(name, value);
        return head + "\r\n";
    }

    void send(QTcpSocket *socket, const QByteArray &head, const QByteArray &body, bool isProbe)
    {
        socket->write(head);
        if (!isProbe && cutAfter >= 0 && cutAfter < body.size()) {
            socket->write(body.first(cutAfter));
            socket->flush();
            // The bytes come before the end of the connection.
            socket->disconnectFromHost();
        } else if (!isProbe && stopAfter >= 0 && stopAfter < body.size()) {
            socket->write(body.first(stopAfter));
            m_held.append({socket, body.sliced(stopAfter)});
        } else {
            socket->write(body);
            socket->disconnectFromHost();
        }
    }

    QTcpServer m_server;
    QHash<QTcpSocket *, QByteArray> m_heard;
    QList<std::pair<QPointer<QTcpSocket>, QByteArray>> m_held;
    QList<Request> m_requests;
    QList<Request> m_probes;
};
