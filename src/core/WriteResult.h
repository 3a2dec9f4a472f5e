#pragma once

#include <QString>

#include <system_error>

/// What came of writing a file, and why when nothing did. Whoever asked for the write says so to
/// the user or to the log.
class [[nodiscard]] WriteResult {
public:
    enum class Failure {
        /// The caller's own content was refused or could not be made.
        Refused,
        NoRoom,
        /// By the rights of the file or its folder, or of the disk.
        NotAllowed,
        FolderMissing,
        /// A new file's name is another's.
        Taken,
        /// Another program keeps the folder locked.
        Busy,
        /// What is there cannot be read, and so is not replaced.
        Unreadable,
        /// What is there is UTF-16, into which no single bytes are written.
        SixteenBits,
        Other
    };

    /// Done.
    WriteResult() = default;
    /// `detail` is what the system says of it, for the log and for what has no text of its own.
    explicit WriteResult(Failure failure, const QString &detail = {})
        : m_failure(failure)
        , m_detail(detail)
        , m_done(false)
    {
    }
    static WriteResult of(const std::error_code &error);

    explicit operator bool() const { return m_done; }
    bool isFailure(Failure failure) const { return !m_done && m_failure == failure; }
    /// Of one that failed.
    Failure failure() const { return m_failure; }
    /// What the system says, for the log.
    QString detail() const { return m_detail; }
    /// Where nobody waits for word of it: what failed was logged as it did.
    void leaveToLog() const { }

private:
    Failure m_failure = Failure::Other;
    QString m_detail;
    bool m_done = true;
};
