#include "FolderLock.h"

#include "Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <chrono>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <future>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {
// A write takes milliseconds; whoever holds a lock this long is stopped or hangs.
constexpr std::chrono::milliseconds longestWait(3000);
}

#ifdef Q_OS_UNIX

namespace {
/// Waits for the lock in a thread of its own, which nobody else can be made to give up on. One that
/// comes too late is released with the descriptor it came for.
bool lockComesInTime(int folder)
{
    auto lock = std::make_shared<std::promise<bool>>();
    std::future<bool> comes = lock->get_future();
    std::thread([lock, own = ::dup(folder)] {
        int result = 0;
        do {
            result = ::flock(own, LOCK_EX);
        } while (result != 0 && errno == EINTR);
        lock->set_value(result == 0);
        ::close(own);
    }).detach();
    return comes.wait_for(longestWait) == std::future_status::ready && comes.get();
}
}

FolderLock::FolderLock(const QString &folder, Wait wait)
    : m_folder(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (m_folder < 0) {
        qCWarning(lcFiles) << "cannot open" << folder << "to write in it";
        return;
    }
    const bool isTaken =
        ::flock(m_folder, LOCK_EX | LOCK_NB) != 0 && (errno == EWOULDBLOCK || errno == EINTR);
    m_held = !isTaken || (wait == Wait::Some && lockComesInTime(m_folder));
    if (!m_held && wait == Wait::Some)
        qCWarning(lcFiles) << "another program keeps" << folder << "locked";
}

FolderLock::~FolderLock()
{
    if (m_folder >= 0)
        ::close(m_folder);
}

bool FolderLock::isAt(const QString &path) const
{
    struct stat mine = {};
    struct stat there = {};
    return ::fstat(m_folder, &mine) == 0 && ::stat(QFile::encodeName(path).constData(), &there) == 0
        && mine.st_dev == there.st_dev && mine.st_ino == there.st_ino;
}

#else

FolderLock::FolderLock(const QString &folder, Wait wait)
    : m_file(std::make_unique<QLockFile>(QDir(folder).filePath(u".orvane.lock"_s)))
{
    m_held = m_file->tryLock(wait == Wait::Some ? int(longestWait.count()) : 0);
    if (!m_held && wait == Wait::Some)
        qCWarning(lcFiles) << "cannot lock" << folder;
}

FolderLock::~FolderLock() = default;

bool FolderLock::isAt(const QString &path) const
{
    return QFileInfo(m_file->fileName()).dir() == QDir(path) && QDir(path).exists();
}

#endif
