#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QSet>
#include <functional>
#include <memory>

class QSslConfiguration;
class QTcpServer;
class QTcpSocket;
class QTemporaryDir;

/// A web server of a test's own on this machine, with scripted answers. It answers while the
/// test's event loop runs, also as "localhost", which pages take for another site.
class TestServer : public QObject {
    Q_OBJECT

public:
    enum class Kind { Http, Https };

    struct Request {
        QByteArray method;
        /// With the query.
        QByteArray path;
        /// Names in lower case.
        QHash<QByteArray, QByteArray> headers;
        QByteArray body;
    };

    struct Reply {
        int status = 200;
        QByteArray body;
        QByteArray type = "text/html; charset=utf-8";
        QList<QPair<QByteArray, QByteArray>> headers;
        /// Sends the headers and promises a body that never comes.
        bool stallAfterHeaders = false;
        /// Accepts the request and says nothing at all.
        bool silent = false;
        /// Closes the connection without an answer.
        bool hangUp = false;
        /// The length that the headers tell; -1: the body's.
        qsizetype announced = -1;
    };

    using Handler = std::function<Reply(const Request &)>;

    /// The certificate of an https server is made on the spot and signed by itself.
    explicit TestServer(Kind kind = Kind::Http, QObject *parent = nullptr);
    /// An https server with a certificate of the caller's.
    explicit TestServer(const QSslConfiguration &certificate);
    ~TestServer() override;

    /// Of an https server, for the connections from now on.
    void setCertificate(const QSslConfiguration &certificate);

    bool isListening() const;
    int port() const;
    /// The address of `path` ("/x") on this server.
    QString url(const QString &path = QStringLiteral("/"),
                const QString &host = QStringLiteral("127.0.0.1")) const;

    /// Answers for a path without its query; the last one given holds. Others get 404.
    void page(const QByteArray &path, const QByteArray &html);
    void reply(const QByteArray &path, const Reply &reply);
    void redirect(const QByteArray &path, const QByteArray &target, int status = 302);
    void handle(const QByteArray &path, const Handler &handler);
    /// Bytes that answer range requests as a file server does.
    void file(const QByteArray &path, const QByteArray &bytes, const QByteArray &type);

    /// Requests for `path` are answered no sooner than with `release`.
    void hold(const QByteArray &path) { m_held.insert(path); }
    void release();

    QList<Request> requests() const { return m_requests; }
    QList<Request> requests(const QByteArray &path) const;
    int count(const QByteArray &path) const { return int(requests(path).size()); }
    void forgetRequests() { m_requests.clear(); }

signals:
    void requested(const QByteArray &path);

private:
    void start();
    void accept(QTcpSocket *socket);
    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const Request &request);

    std::unique_ptr<QTcpServer> m_server;
    std::unique_ptr<QTemporaryDir> m_certificate;
    Kind m_kind;
    QHash<QByteArray, Handler> m_handlers;
    QHash<QTcpSocket *, QByteArray> m_pending;
    QList<Request> m_requests;
    QSet<QByteArray> m_held;
    QList<std::pair<QPointer<QTcpSocket>, Request>> m_waiting;
};
