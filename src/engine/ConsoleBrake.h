#pragma once

#include <QElapsedTimer>

/// Holds back the process of a page that tells the console more than anybody reads. The engine
/// hands over every line, from wherever in the page it comes, and nothing else of the page before
/// it: unbraked, the next navigation waits for seconds behind hundreds of megabytes of lines.
class ConsoleBrake {
public:
    ConsoleBrake() = default;
    ~ConsoleBrake() { release(); }
    Q_DISABLE_COPY_MOVE(ConsoleBrake)

    /// Whether the line that has come now is one too many in this second.
    bool isTooMany();
    /// Lets the process rest for a moment; it goes on by itself.
    void apply(qint64 process);
    /// The process goes on at once.
    void release();

private:
    QElapsedTimer m_second;
    int m_lines = 0;
    qint64 m_resting = 0;
};
