#pragma once

#include <QtGlobal>

/// How fast something comes in, as a mean over the last seconds.
class DownloadRate {
public:
    /// `received` bytes were there at `now`, in milliseconds of any clock that goes forward.
    void note(qint64 received, qint64 now);
    /// Bytes in a second; 0 while that cannot be said.
    qint64 perSecond() const;
    /// Until `size` bytes are there; -1 while that cannot be said.
    qint64 secondsLeft(qint64 size) const;
    /// After a pause.
    void restart();

private:
    qint64 m_received = 0;
    qint64 m_at = -1;
    double m_rate = 0;
};
