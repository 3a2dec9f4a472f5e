#pragma once

#include <QString>
#include <QtGlobal>
#ifndef Q_OS_UNIX
#include <QLockFile>
#include <memory>
#endif

/// Keeps every other holder of a lock on the same folder waiting, in this and other processes,
/// while it lives: writers of files in one folder take turns. It ends with its process, however
/// that ends, and leaves no file behind (where folders cannot be locked themselves, a file stands
/// for the lock while it is held, and after a crash until the next write).
class FolderLock {
public:
    /// For another holder: a few seconds at most, or not at all, and then not having the lock is
    /// no failure that is logged.
    enum class Wait { Some, None };

    explicit FolderLock(const QString &folder, Wait wait = Wait::Some);
    ~FolderLock();
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    /// False when another held it all the time or the folder is missing. Where the file system
    /// has no locks this is true: a write then is better than none.
    bool isHeld() const { return m_held; }
    /// The folder is the one that is at this path now.
    bool isAt(const QString &path) const;

private:
    bool m_held = false;
#ifdef Q_OS_UNIX
    int m_folder = -1;
#else
    std::unique_ptr<QLockFile> m_file;
#endif
};
