#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QThread>
#include <algorithm>
#include <atomic>

/// How long the interface was held at most: a thread asks the interface's thread for an answer
/// every few milliseconds and looks how late it comes.
class Pulse : public QObject {
public:
    explicit Pulse(QObject *parent)
        : QObject(parent)
        , m_thread(QThread::create([this] { beat(); }))
    {
        m_clock.start();
        m_thread->start();
    }
    ~Pulse() override
    {
        m_ended = true;
        m_thread->wait();
        delete m_thread;
    }

    double longestMs() const { return double(m_longest) / 1e6; }
    void forget() { m_longest = 0; }

private:
    void beat()
    {
        constexpr int everyMs = 2;
        while (!m_ended) {
            // The next question only after the answer: a long hold is one, not many.
            if (!m_asked.exchange(true)) {
                const qint64 sent = m_clock.nsecsElapsed();
                QMetaObject::invokeMethod(this, [this, sent] { answer(sent); });
            }
            QThread::msleep(everyMs);
        }
    }
    void answer(qint64 sent)
    {
        m_longest = std::max(m_longest, m_clock.nsecsElapsed() - sent);
        m_asked = false;
    }

    QElapsedTimer m_clock;
    QThread *m_thread;
    std::atomic<bool> m_asked = false;
    std::atomic<bool> m_ended = false;
    qint64 m_longest = 0;
};
