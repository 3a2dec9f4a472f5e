#pragma once

#include <QObject>
#include <QTcpServer>
#include <functional>

/// Serves one small page under every number, "/1", "/2" and so on. The page tells what it has come
/// to by asking for "/WORD/NUMBER".
class PageServer : public QObject {
    Q_OBJECT

public:
    explicit PageServer(const QByteArray &page);

    /// Ends with a slash.
    QString base() const;
    /// The address of page `number`.
    QString page(int number) const;
    /// Runs `act` and the event loop until page `number` tells anything; milliseconds. Ends the
    /// program after a minute.
    double untilTold(int number, const std::function<void()> &act);

signals:
    void told(const QByteArray &word, int number);

private:
    void answer(QTcpSocket *socket);

    QTcpServer m_server;
    QByteArray m_page;
};
