#pragma once

#include <QObject>
#include <functional>

/// Tells when a process has ended that need not be one of ours: from the event loop, and so within
/// a nested one too, while the library that started it may not be heard.
class ProcessEnd : public QObject {
public:
    /// `then` is called once, at once in the event loop where there is no such process any more;
    /// never where the system cannot tell. A `process` of 0 is none.
    ProcessEnd(qint64 process, const std::function<void()> &then);
    ~ProcessEnd() override;

private:
    /// A file descriptor; -1: none.
    int m_process = -1;
};
