#include "FileFaults.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

using FileFaults::Kind;

enum class Operation { Write, Other };

Kind theKind = Kind::Fail;
std::atomic<int> remaining = 0;
std::atomic<bool> armed = false;
std::function<void()> theCall;
std::atomic<int> theLack = FileFaults::None;

bool meets(Operation operation)
{
    switch (theKind) {
    case Kind::FullDisk:
        return operation == Operation::Write;
    case Kind::ReadOnly:
        return remaining <= 0;
    case Kind::Fail:
    case Kind::Kill:
        break;
    }
    return remaining == 0;
}

/// True when the operation about to be done goes wrong.
bool goesWrong(Operation operation)
{
    if (!armed || --remaining > 0)
        return false;
    if (theCall) {
        armed = false;
        theCall();
        return false;
    }
    if (!meets(operation))
        return false;
    if (theKind == Kind::Kill)
        ::_exit(FileFaults::killed);
    errno = theKind == Kind::ReadOnly ? EROFS : ENOSPC;
    return true;
}

// Threads wake each other up by writing to what is no file.
bool isPlainFile(int file)
{
    struct stat status = {};
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

template <typename Function> Function *real(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

bool isWriting(int flags)
{
    return (flags & O_ACCMODE) != O_RDONLY;
}

/// Flags that a file without a name has, and a folder too.
bool isUnnamed(int flags)
{
    return (flags & O_TMPFILE) == O_TMPFILE;
}

/// True, and the error said, where the disk cannot do that.
bool lacks(int what, int error)
{
    if ((theLack & what) == 0)
        return false;
    errno = error;
    return true;
}

using Open = int(const char *, int, ...);

int openBy(Open *open, const char *path, int flags, mode_t mode)
{
    if (isUnnamed(flags) && lacks(FileFaults::UnnamedFiles, EOPNOTSUPP))
        return -1;
    return isWriting(flags) && goesWrong(Operation::Other) ? -1 : open(path, flags, mode);
}

}

namespace FileFaults {

void arm(Kind kind, int at)
{
    theKind = kind;
    theCall = nullptr;
    remaining = at;
    armed = true;
}

void call(const std::function<void()> &what, int at)
{
    theCall = what;
    remaining = at;
    armed = true;
}

bool disarm()
{
    armed = false;
    return remaining <= 0;
}

void setLack(int lack)
{
    theLack = lack;
}

}

extern "C" {

int open64(const char *path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return openBy(real<Open>("open64"), path, flags, mode);
}

int open(const char *path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return openBy(real<Open>("open"), path, flags, mode);
}

ssize_t write(int file, const void *bytes, size_t count)
{
    static auto *const write = real<ssize_t(int, const void *, size_t)>("write");
    if (!armed || !isPlainFile(file))
        return write(file, bytes, count);
    const bool fillsUp = theKind == Kind::FullDisk && remaining == 1;
    if (!goesWrong(Operation::Write))
        return write(file, bytes, count);
    return fillsUp ? write(file, bytes, count / 2) : -1;
}

int mkdir(const char *path, mode_t mode) noexcept
{
    static auto *const mkdir = real<int(const char *, mode_t)>("mkdir");
    // That it is there is said first.
    const bool isNew = ::access(path, F_OK) != 0;
    return isNew && goesWrong(Operation::Other) ? -1 : mkdir(path, mode);
}

int fsync(int file)
{
    static auto *const fsync = real<int(int)>("fsync");
    return goesWrong(Operation::Other) ? -1 : fsync(file);
}

int fdatasync(int file)
{
    static auto *const fdatasync = real<int(int)>("fdatasync");
    return goesWrong(Operation::Other) ? -1 : fdatasync(file);
}

int fchmod(int file, mode_t mode) noexcept
{
    static auto *const fchmod = real<int(int, mode_t)>("fchmod");
    return goesWrong(Operation::Other) ? -1 : fchmod(file, mode);
}

int linkat(int from, const char *old, int to, const char *name, int flags) noexcept
{
    static auto *const linkat = real<int(int, const char *, int, const char *, int)>("linkat");
    return goesWrong(Operation::Other) ? -1 : linkat(from, old, to, name, flags);
}

int link(const char *old, const char *name) noexcept
{
    static auto *const link = real<int(const char *, const char *)>("link");
    return lacks(FileFaults::Links, EPERM) || goesWrong(Operation::Other) ? -1 : link(old, name);
}

int rename(const char *old, const char *name) noexcept
{
    static auto *const rename = real<int(const char *, const char *)>("rename");
    return goesWrong(Operation::Other) ? -1 : rename(old, name);
}

int renameat2(int from, const char *old, int to, const char *name, unsigned flags) noexcept
{
    static auto *const renameat2 =
        real<int(int, const char *, int, const char *, unsigned)>("renameat2");
    return lacks(FileFaults::NewNames, EINVAL) || goesWrong(Operation::Other)
        ? -1
        : renameat2(from, old, to, name, flags);
}

int unlink(const char *path) noexcept
{
    static auto *const unlink = real<int(const char *)>("unlink");
    // That it is not there is said first.
    const bool isThere = ::faccessat(AT_FDCWD, path, F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    return isThere && goesWrong(Operation::Other) ? -1 : unlink(path);
}

int rmdir(const char *path) noexcept
{
    static auto *const rmdir = real<int(const char *)>("rmdir");
    return goesWrong(Operation::Other) ? -1 : rmdir(path);
}

int chmod(const char *path, mode_t mode) noexcept
{
    static auto *const chmod = real<int(const char *, mode_t)>("chmod");
    return goesWrong(Operation::Other) ? -1 : chmod(path, mode);
}
}
