#include "TestServer.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {
QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QSslConfiguration selfSigned(const QString &folder)
{
    const QString key = folder + "/key.pem"_L1;
    const QString certificate = folder + "/certificate.pem"_L1;
    QProcess::execute(u"openssl"_s,
                      {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-keyout"_s,
                       key, u"-out"_s, certificate, u"-days"_s, u"2"_s, u"-subj"_s,
                       u"/CN=localhost"_s, u"-addext"_s,
                       u"subjectAltName=DNS:localhost,IP:127.0.0.1"_s});
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPrivateKey(QSslKey(fileBytes(key), QSsl::Rsa));
    configuration.setLocalCertificate(QSslCertificate(fileBytes(certificate)));
    return configuration;
}

/// The whole request at the front of `bytes`, taken off; false while more must come.
bool takeRequest(QByteArray &bytes, TestServer::Request &request)
{
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0)
        return false;
    const QList<QByteArray> lines = bytes.left(end).split('\n');
    const QList<QByteArray> words = lines.first().trimmed().split(' ');
    request.method = words.value(0);
    request.path = words.value(1);
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QByteArray line = lines.at(i).trimmed();
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    const qsizetype length = request.headers.value("content-length").toLongLong();
    if (bytes.size() < end + 4 + length)
        return false;
    request.body = bytes.mid(end + 4, length);
    bytes.remove(0, end + 4 + length);
    return true;
}

QByteArray pathOnly(const QByteArray &path)
{
    const qsizetype query = path.indexOf('?');
    return query < 0 ? path : path.left(query);
}

TestServer::Reply partOf(const QByteArray &bytes, const QByteArray &type,
                         const TestServer::Request &request)
{
    TestServer::Reply reply;
    reply.type = type;
    reply.headers = {{"Accept-Ranges", "bytes"},
                     {"ETag", "\"one\""},
                     {"Last-Modified", "Mon, 01 Jan 2024 00:00:00 GMT"},
                     {"Cache-Control", "max-age=3600"}};
    const QByteArray range = request.headers.value("range");
    const QByteArray condition = request.headers.value("if-range");
    if (!range.startsWith("bytes=") || (!condition.isEmpty() && condition != "\"one\"")) {
        reply.body = bytes;
        return reply;
    }
    const QList<QByteArray> ends = range.mid(6).split('-');
    const qsizetype first = ends.value(0).toLongLong();
    const qsizetype last = ends.value(1).isEmpty()
        ? bytes.size() - 1
        : qMin<qsizetype>(ends.value(1).toLongLong(), bytes.size() - 1);
    reply.status = 206;
    reply.body = bytes.mid(first, last - first + 1);
    reply.headers.append({"Content-Range",
                          "bytes " + QByteArray::number(first) + '-' + QByteArray::number(last)
                              + '/' + QByteArray::number(bytes.size())});
    return reply;
}
}

TestServer::TestServer(Kind kind, QObject *parent)
    : QObject(parent)
    , m_kind(kind)
{
    if (kind == Kind::Https) {
        m_certificate = std::make_unique<QTemporaryDir>();
        auto server = std::make_unique<QSslServer>();
        server->setSslConfiguration(selfSigned(m_certificate->path()));
        m_server = std::move(server);
    } else {
        m_server = std::make_unique<QTcpServer>();
    }
    start();
}

TestServer::TestServer(const QSslConfiguration &certificate)
    : m_kind(Kind::Https)
{
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(certificate);
    m_server = std::move(server);
    start();
}

void TestServer::setCertificate(const QSslConfiguration &certificate)
{
    static_cast<QSslServer *>(m_server.get())->setSslConfiguration(certificate);
    // A client may have connected ahead of what it is going to ask.
    const QList<QTcpSocket *> sockets = m_pending.keys();
    for (QTcpSocket *socket : sockets)
        socket->abort();
}

void TestServer::start()
{
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (QTcpSocket *socket = m_server->nextPendingConnection())
            accept(socket);
    });
    // Of a secure server, also those that the client has left before they were proven.
    m_server->setMaxPendingConnections(1000);
    m_server->listen(QHostAddress::LocalHost);
}

TestServer::~TestServer()
{
    m_server->disconnect(this);
    const QList<QTcpSocket *> sockets = m_pending.keys();
    for (QTcpSocket *socket : sockets)
        socket->disconnect(this);
}

bool TestServer::isListening() const
{
    return m_server->isListening();
}

int TestServer::port() const
{
    return m_server->serverPort();
}

QString TestServer::url(const QString &path, const QString &host) const
{
    return (m_kind == Kind::Https ? u"https://"_s : u"http://"_s) + host + u':'
        + QString::number(port()) + path;
}

void TestServer::page(const QByteArray &path, const QByteArray &html)
{
    Reply answer;
    answer.body = html;
    reply(path, answer);
}

void TestServer::reply(const QByteArray &path, const Reply &reply)
{
    handle(path, [reply](const Request &) { return reply; });
}

void TestServer::redirect(const QByteArray &path, const QByteArray &target, int status)
{
    Reply answer;
    answer.status = status;
    answer.headers.append({"Location", target});
    reply(path, answer);
}

void TestServer::handle(const QByteArray &path, const Handler &handler)
{
    m_handlers.insert(path, handler);
}

void TestServer::file(const QByteArray &path, const QByteArray &bytes, const QByteArray &type)
{
    handle(path, [bytes, type](const Request &request) { return partOf(bytes, type, request); });
}

QList<TestServer::Request> TestServer::requests(const QByteArray &path) const
{
    QList<Request> result;
    for (const Request &request : m_requests) {
        if (pathOnly(request.path) == path)
            result.append(request);
    }
    return result;
}

void TestServer::accept(QTcpSocket *socket)
{
    m_pending.insert(socket, {});
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
        m_pending.remove(socket);
        socket->deleteLater();
    });
    read(socket);
}

void TestServer::read(QTcpSocket *socket)
{
    QByteArray &bytes = m_pending[socket];
    bytes += socket->readAll();
    Request request;
    if (!takeRequest(bytes, request))
        return;
    m_requests.append(request);
    answer(socket, request);
    emit requested(request.path);
}

void TestServer::release()
{
    m_held.clear();
    for (const auto &[socket, request] : std::exchange(m_waiting, {})) {
        if (socket)
            answer(socket, request);
    }
}

void TestServer::answer(QTcpSocket *socket, const Request &request)
{
    if (m_held.contains(pathOnly(request.path))) {
        m_waiting.append({socket, request});
        return;
    }
    Reply reply;
    const auto handler = m_handlers.constFind(pathOnly(request.path));
    if (handler != m_handlers.constEnd()) {
        reply = (*handler)(request);
    } else {
        reply.status = 404;
        reply.body = "<!doctype html><title>Not here</title><p id=missing>Not here";
    }
    if (reply.silent)
        return;
    if (reply.hangUp) {
        socket->abort();
        return;
    }
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Answer\r\n";
    if (reply.status != 204)
        head += "Content-Type: " + reply.type + "\r\n";
    for (const auto &[name, value] : std::as_const(reply.headers))
        head += name + ": " + value + "\r\n";
    const qsizetype told = reply.announced < 0 ? reply.body.size() : reply.announced;
    const qsizetype length = reply.stallAfterHeaders ? 100000 : told;
    head += "Content-Length: " + QByteArray::number(length) + "\r\nConnection: close\r\n\r\n";
    socket->write(head);
    if (request.method != "HEAD")
        socket->write(reply.body);
    socket->flush();
    if (!reply.stallAfterHeaders)
        socket->disconnectFromHost();
}
