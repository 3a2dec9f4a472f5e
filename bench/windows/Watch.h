#pragma once

#include <QObject>
#include <QString>
#include <QTcpServer>
#include <functional>

/// Serves pages that tell when they have painted: at first, and each time they are shown again.
class Watch : public QObject {
    Q_OBJECT

public:
    Watch();

    /// The address of page `number`.
    QString page(int number) const;
    /// Ends with a slash.
    QString base() const;
    /// Runs `act` and the event loop until page `number` has painted; milliseconds.
    double untilPainted(int number, const std::function<void()> &act);
    /// Runs the event loop until `count` pages in all have painted for the first time.
    void untilFirstPaints(int count);

signals:
    void painted(int number);

private:
    void answer(QTcpSocket *socket);

    QTcpServer m_server;
    int m_firstPaints = 0;
};
