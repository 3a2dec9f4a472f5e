#pragma once

#include "StartRequest.h"

#include <QLocalSocket>
#include <QObject>

#include <atomic>
#include <memory>

/// A request that has come in. Whoever made it may give it up before anybody takes it.
struct StartCall {
    enum class State { Open, Taken, GivenUp };

    int id = 0;
    StartRequest request;
    std::atomic<State> state = State::Open;

    /// True for the one who closes it first.
    bool close(State to)
    {
        State open = State::Open;
        return state.compare_exchange_strong(open, to);
    }
};

/// One start that has come to the socket: reads its request, of which it holds little and not for
/// long, and answers it.
class StartVisit : public QObject {
    Q_OBJECT

public:
    StartVisit(std::unique_ptr<QLocalSocket> connection, int id, QObject *parent);
    ~StartVisit() override;

    bool hasAsked() const { return m_call != nullptr; }
    /// The last word.
    void answer(QByteArrayView word);

signals:
    void asked(const std::shared_ptr<StartCall> &call);
    void over(int id);

private:
    void read();
    void leave();

    std::unique_ptr<QLocalSocket> m_connection;
    int m_id;
    QByteArray m_line;
    std::shared_ptr<StartCall> m_call;
};
