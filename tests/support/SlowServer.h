#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>

class QTcpSocket;

/// A server with one file, which comes no faster than a test lets it, and whose connections can be
/// cut in the middle.
class SlowServer : public QObject {
public:
    static constexpr qint64 size = 600'000;

    SlowServer();
    ~SlowServer() override;

    bool isListening() const { return m_server.isListening(); }
    QString url() const;
    static QByteArray body();

    /// It names the file's state and gives the rest of it to those who ask for that.
    void setHasRanges(bool has) { m_hasRanges = has; }
    /// The next bytes of the connections that there are and come.
    void send(qint64 bytes);
    /// All that is left, now and later.
    void sendAll() { send(size); }
    /// Breaks off all connections; those that come later wait again for `send`.
    void cut();

    /// What each request asked for in "Range"; empty for the whole.
    QList<QByteArray> requests() const { return m_requests; }
    /// Connections that have not come to their end.
    int open() const { return int(m_sent.size()); }

private:
    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const QByteArray &range);
    void write(QTcpSocket *socket);

    QTcpServer m_server;
    QList<QByteArray> m_requests;
    /// Up to where in the file each connection has come.
    QHash<QTcpSocket *, qint64> m_sent;
    /// How far they may.
    qint64 m_limit = 0;
    bool m_hasRanges = false;
};
