#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSemaphore>
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
        m_end.release();
        m_thread->wait();
        delete m_thread;
    }

    double longestMs() const { return double(m_longest) / 1e6; }
    void forget() { m_longest = 0; }

private:
    void beat()
    {
        constexpr int everyMs = 2;
        do {
            // The next question only after the answer: a long hold is one, not many.
            if (!m_asked.exchange(true)) {
                const qint64 sent = m_clock.nsecsElapsed();
                QMetaObject::invokeMethod(this, [this, sent] { answer(sent); });
            }
        } while (!m_end.tryAcquire(1, everyMs));
    }
    void answer(qint64 sent)
    {
        m_longest = std::max(m_longest, m_clock.nsecsElapsed() - sent);
        m_asked = false;
    }

    QElapsedTimer m_clock;
    QSemaphore m_end;
    QThread *m_thread;
    std::atomic<bool> m_asked = false;
    qint64 m_longest = 0;
};
