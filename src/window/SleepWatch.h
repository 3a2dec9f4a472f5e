#pragma once

#include <QHash>
#include <QObject>
#include <QTimer>

class BrowserWindow;

/// Puts the windows to sleep that nobody has looked at for a time, and, when memory is short, those
/// that nobody has looked at for longest; no page comes then for being in sight alone.
class SleepWatch : public QObject {
    Q_OBJECT

public:
    explicit SleepWatch(QObject *parent);

    /// Looks at all windows at a time of a clock that only goes on, milliseconds; `memory` is what
    /// the program takes, bytes, 0 where that is not known.
    void look(qint64 now, qint64 memory);
    /// Looks as soon as it is known what the program takes.
    void measure();
    /// Above this, bytes, memory is short; 0: never.
    qint64 memoryLimit() const;
    /// What was free at the start, bytes.
    void setFreeMemory(qint64 bytes) { m_free = bytes; }

private:
    void measureOften();
    void noteUnseen(qint64 now);
    QList<BrowserWindow *> longestUnseen() const;

    /// When each window went out of sight, by its number.
    QHash<int, qint64> m_unseen;
    QTimer m_timer;
    qint64 m_free = 0;
    bool m_isMeasuring = false;
    /// Pages that came in their turn since memory was measured.
    int m_came = 0;
};
