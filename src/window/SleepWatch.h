#pragma once

#include <QHash>
#include <QObject>
#include <QTimer>

class BrowserWindow;

/// Puts the windows to sleep that nobody has looked at for a time, and, when memory is short, those
/// that nobody has looked at for longest.
class SleepWatch : public QObject {
    Q_OBJECT

public:
    explicit SleepWatch(QObject *parent);

    /// Looks at all windows at a time of a clock that only goes on, milliseconds; `memory` is what
    /// the program takes, bytes, 0 where that is not known.
    void look(qint64 now, qint64 memory);
    /// Above this, bytes, memory is short; 0: never.
    qint64 memoryLimit() const;
    /// What was free at the start, bytes.
    void setFreeMemory(qint64 bytes) { m_free = bytes; }

private:
    void measure();
    void noteUnseen(qint64 now);
    QList<BrowserWindow *> longestUnseen() const;
    void ask(BrowserWindow *window, bool isShort);

    /// When each window went out of sight, by its number.
    QHash<int, qint64> m_unseen;
    QTimer m_timer;
    qint64 m_free = 0;
    bool m_isMeasuring = false;
};
