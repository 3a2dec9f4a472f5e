#pragma once

#include "StartVisit.h"

#include <QLocalServer>
#include <QMap>

/// Hears of later starts, in a thread of its own. There are a few visits at one time: where more
/// come, the oldest one that has not said what it wants goes.
class StartServer : public QLocalServer {
    Q_OBJECT

public:
    StartServer(const QString &socket, const QStringList &displays);

    void begin();
    /// From now on a call waits for its answer; until then each is promised to be done.
    void endPromises() { m_promises = false; }
    /// Not taken: the start gets no word.
    void answer(int id, bool isTaken);

signals:
    void called(const std::shared_ptr<StartCall> &call);

protected:
    void incomingConnection(quintptr descriptor) override;

private:
    void makeRoom();
    void hear(const std::shared_ptr<StartCall> &call);
    void forget(int id);

    QString m_socket;
    QStringList m_displays;
    /// The oldest first.
    QMap<int, StartVisit *> m_visits;
    int m_last = 0;
    bool m_promises = true;
};
