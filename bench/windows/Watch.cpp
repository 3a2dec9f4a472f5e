#include "Watch.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTcpSocket>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int limitMs = 60'000;

const QByteArray page = R"(<!DOCTYPE html><title>A page of many</title><h1>A page of many</h1>
<p>One paragraph of text, as small as a page can be.</p>
<script>
const tell = what => requestAnimationFrame(() => requestAnimationFrame(
    () => navigator.sendBeacon('/' + what + location.pathname)));
tell('first');
document.addEventListener('visibilitychange', () => document.hidden || tell('again'));
</script>)";

QByteArray response(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

}

Watch::Watch()
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

QString Watch::base() const
{
    return u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort());
}

QString Watch::page(int number) const
{
    return base() + QString::number(number);
}

void Watch::answer(QTcpSocket *socket)
{
    if (!socket->canReadLine())
        return;
    const QByteArray path = socket->readLine().split(' ').value(1);
    socket->readAll();
    const bool first = path.startsWith("/first/");
    const bool report = first || path.startsWith("/again/");
    socket->write(response(report || path == "/favicon.ico" ? QByteArray() : ::page));
    socket->disconnectFromHost();
    if (first)
        ++m_firstPaints;
    if (report)
        emit painted(path.mid(path.lastIndexOf('/') + 1).toInt());
}

double Watch::untilPainted(int number, const std::function<void()> &act)
{
    QEventLoop loop;
    connect(this, &Watch::painted, &loop, [&](int which) {
        if (which == number)
            loop.quit();
    });
    QTimer::singleShot(limitMs, &loop, [number] { qFatal("page %d is never painted", number); });
    QElapsedTimer clock;
    clock.start();
    act();
    loop.exec();
    return double(clock.nsecsElapsed()) / 1e6;
}

void Watch::untilFirstPaints(int count)
{
    QEventLoop loop;
    connect(this, &Watch::painted, &loop, [&] {
        if (m_firstPaints >= count)
            loop.quit();
    });
    QTimer::singleShot(limitMs, &loop, &QEventLoop::quit);
    loop.exec();
}
