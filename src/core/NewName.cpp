#include "NewName.h"

#ifdef Q_OS_UNIX
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#else
#include <QFile>
#endif

#ifdef Q_OS_UNIX

namespace {
std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// Where a disk knows neither links nor a renaming that replaces nothing, a name is taken first.
std::error_code renameToTaken(const QByteArray &from, const QByteArray &to)
{
    const int file = ::open(to.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (file < 0)
        return lastError();
    ::close(file);
    if (::rename(from.constData(), to.constData()) == 0)
        return {};
    const std::error_code error = lastError();
    ::unlink(to.constData());
    return error;
}
}

std::error_code NewName::give(const QByteArray &from, const QByteArray &to)
{
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return {};
    if (errno != EINVAL && errno != ENOSYS)
        return lastError();
#endif
    if (::link(from.constData(), to.constData()) != 0) {
        const bool isUnknown = errno == EPERM || errno == ENOSYS || errno == EOPNOTSUPP;
        return isUnknown ? renameToTaken(from, to) : lastError();
    }
    ::unlink(from.constData());
    return {};
}

#else

std::error_code NewName::give(const QByteArray &from, const QByteArray &to)
{
    if (QFile::rename(QFile::decodeName(from), QFile::decodeName(to)))
        return {};
    return std::make_error_code(std::errc::file_exists);
}

#endif
