#include "FileFaults.h"

#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

FileFaults::Kind theKind = FileFaults::Kind::Fail;
int remaining = 0;
bool armed = false;

/// True when the operation about to be done is the one that goes wrong.
bool goesWrong()
{
    if (!armed || --remaining != 0)
        return false;
    if (theKind == FileFaults::Kind::Kill)
        ::_exit(FileFaults::killed);
    errno = ENOSPC;
    return true;
}

template <typename Function> Function *real(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

bool isWriting(int flags)
{
    return (flags & O_ACCMODE) != O_RDONLY;
}

}

namespace FileFaults {

void arm(Kind kind, int at)
{
    theKind = kind;
    remaining = at;
    armed = true;
}

bool disarm()
{
    armed = false;
    return remaining <= 0;
}

}

extern "C" {

int open64(const char *path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    static auto *const open = real<int(const char *, int, ...)>("open64");
    return isWriting(flags) && goesWrong() ? -1 : open(path, flags, mode);
}

ssize_t write(int file, const void *bytes, size_t count)
{
    static auto *const write = real<ssize_t(int, const void *, size_t)>("write");
    return goesWrong() ? -1 : write(file, bytes, count);
}

int fsync(int file)
{
    static auto *const fsync = real<int(int)>("fsync");
    return goesWrong() ? -1 : fsync(file);
}

int fdatasync(int file)
{
    static auto *const fdatasync = real<int(int)>("fdatasync");
    return goesWrong() ? -1 : fdatasync(file);
}

int fchmod(int file, mode_t mode) noexcept
{
    static auto *const fchmod = real<int(int, mode_t)>("fchmod");
    return goesWrong() ? -1 : fchmod(file, mode);
}

int linkat(int from, const char *old, int to, const char *name, int flags) noexcept
{
    static auto *const linkat = real<int(int, const char *, int, const char *, int)>("linkat");
    return goesWrong() ? -1 : linkat(from, old, to, name, flags);
}

int rename(const char *old, const char *name) noexcept
{
    static auto *const rename = real<int(const char *, const char *)>("rename");
    return goesWrong() ? -1 : rename(old, name);
}
}
