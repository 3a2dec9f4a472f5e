#include "PageServer.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTcpSocket>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

QByteArray response(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

}

PageServer::PageServer(const QByteArray &page)
    : m_page(page)
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

QString PageServer::page(int number) const
{
    return base() + QString::number(number);
}

void PageServer::answer(QTcpSocket *socket)
{
    if (!socket->canReadLine())
        return;
    const QByteArrayList path = socket->readLine().split(' ').value(1).split('/');
    socket->readAll();
    const bool isPage = path.size() == 2 && path.at(1).toInt() > 0;
    socket->write(response(isPage ? m_page : QByteArray()));
    socket->disconnectFromHost();
    if (path.size() == 3)
        emit told(path.at(1), path.at(2).toInt());
}

double PageServer::untilTold(int number, const std::function<void()> &act)
{
    constexpr int limitMs = 60'000;
    QEventLoop loop;
    connect(this, &PageServer::told, &loop, [&](const QByteArray &, int which) {
        if (which == number)
            loop.quit();
    });
    QTimer::singleShot(limitMs, &loop, [number] { qFatal("nothing from page %d", number); });
    QElapsedTimer clock;
    clock.start();
    act();
    loop.exec();
    return double(clock.nsecsElapsed()) / 1e6;
}
