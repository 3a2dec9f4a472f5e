#include "FolderLock.h"

#include "Log.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {
// A write takes milliseconds; whoever holds a lock this long is stopped or hangs.
constexpr int longestWait = 3000;
}

#ifdef Q_OS_UNIX

FolderLock::FolderLock(const QString &folder)
    : m_folder(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (m_folder < 0) {
        qCWarning(lcFiles) << "cannot open" << folder << "to write in it";
        return;
    }
    QElapsedTimer waited;
    waited.start();
    int result = ::flock(m_folder, LOCK_EX | LOCK_NB);
    while (result != 0 && (errno == EWOULDBLOCK || errno == EINTR)) {
        if (waited.elapsed() > longestWait) {
            qCWarning(lcFiles) << "another program keeps" << folder << "locked";
            return;
        }
        QThread::usleep(500);
        result = ::flock(m_folder, LOCK_EX | LOCK_NB);
    }
    m_held = true;
}

FolderLock::~FolderLock()
{
    if (m_folder >= 0)
        ::close(m_folder);
}

#else

FolderLock::FolderLock(const QString &folder)
    : m_file(std::make_unique<QLockFile>(QDir(folder).filePath(u".orvane.lock"_s)))
{
    m_held = m_file->tryLock(longestWait);
    if (!m_held)
        qCWarning(lcFiles) << "cannot lock" << folder;
}

FolderLock::~FolderLock() = default;

#endif
