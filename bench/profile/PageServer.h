#pragma once

#include <QObject>
#include <QSet>
#include <QTcpServer>

/// Serves small pages, "/1", "/2" and so on; each tells when it has loaded.
class PageServer : public QObject {
    Q_OBJECT

public:
    PageServer();

    /// Ends with a slash.
    QString base() const;
    /// Pages that have loaded since `forget`, each counted once.
    int loaded() const { return int(m_loaded.size()); }
    void forget() { m_loaded.clear(); }

signals:
    void pageLoaded();

private:
    void answer(QTcpSocket *socket);

    QTcpServer m_server;
    QSet<QByteArray> m_loaded;
};
