#include "PageServer.h"

#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace {

const QByteArray page = R"(<!DOCTYPE html><title>A page of many</title><h1>A page of many</h1>
<p>One paragraph of text, as small as a page can be.</p>
<script>addEventListener('load', () => navigator.sendBeacon('/loaded' + location.pathname));</script>
)";

QByteArray response(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

}

PageServer::PageServer()
{
    m_server.setListenBacklogSize(256);
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("no port to serve pages on");
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

QString PageServer::base() const
{
    return u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort());
}

void PageServer::answer(QTcpSocket *socket)
{
    if (!socket->canReadLine())
        return;
    const QByteArray path = socket->readLine().split(' ').value(1);
    socket->readAll();
    const bool report = path.startsWith("/loaded/");
    socket->write(response(report || path == "/favicon.ico" ? QByteArray() : page));
    socket->disconnectFromHost();
    if (report) {
        m_loaded.insert(path);
        emit pageLoaded();
    }
}
