#include "FileStage.h"

#include "NewName.h"
#include "StageName.h"

#include <QFileInfo>

#include <cerrno>
#include <filesystem>

#ifdef Q_OS_UNIX
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {
constexpr int mostTries = 100;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

std::error_code rename(const QByteArray &from, const QByteArray &to)
{
    std::error_code error;
    std::filesystem::rename(from.toStdString(), to.toStdString(), error);
    return error;
}
}

FileStage::FileStage(const QString &target)
    : m_folder(QFile::encodeName(QFileInfo(target).absolutePath()))
    , m_target(QFile::encodeName(QFileInfo(target).absoluteFilePath()))
{
    open();
}

FileStage::~FileStage()
{
    // While it is locked, so that nobody takes it for one left behind.
    if (!m_name.isEmpty())
        QFile::remove(QFile::decodeName(m_name));
}

#ifdef Q_OS_UNIX

namespace {
/// A file without a name gets one through here.
QByteArray pathOf(int file)
{
    return "/proc/self/fd/" + QByteArray::number(file);
}

int openUnnamed([[maybe_unused]] const QByteArray &folder)
{
#ifdef O_TMPFILE
    static const bool canBeNamed = ::access("/proc/self/fd", X_OK) == 0;
    if (canBeNamed)
        return ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
#endif
    errno = EOPNOTSUPP;
    return -1;
}

bool isNowhere(int file)
{
    struct stat status = {};
    return ::fstat(file, &status) == 0 && status.st_nlink == 0;
}

/// A new file of that name, locked; -1 where it cannot be made.
int openNamed(const QByteArray &name)
{
    const int file = ::open(name.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (file < 0)
        return -1;
    ::flock(file, LOCK_EX | LOCK_NB);
    // Between the two steps it was nobody's.
    if (!isNowhere(file))
        return file;
    ::close(file);
    errno = EEXIST;
    return -1;
}
}

void FileStage::open()
{
    int file = openUnnamed(m_folder);
    const bool isUnknown = errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL;
    for (int i = 0; file < 0 && isUnknown && i < mostTries; ++i) {
        m_name = QFile::encodeName(StageName::make(QFile::decodeName(m_folder)));
        file = openNamed(m_name);
        if (file < 0 && errno != EEXIST)
            break;
    }
    if (file >= 0 && m_file.open(file, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle))
        return;
    m_error = lastError();
    if (file < 0)
        m_name.clear();
}

/// A file without a name gets a hidden one.
std::error_code FileStage::giveName()
{
    for (int i = 0; m_name.isEmpty() && i < mostTries; ++i) {
        const QByteArray name = QFile::encodeName(StageName::make(QFile::decodeName(m_folder)));
        ::flock(m_file.handle(), LOCK_EX | LOCK_NB);
        if (::linkat(AT_FDCWD, pathOf(m_file.handle()).constData(), AT_FDCWD, name.constData(),
                     AT_SYMLINK_FOLLOW)
            == 0)
            m_name = name;
        else if (errno != EEXIST)
            break;
    }
    return m_name.isEmpty() ? lastError() : std::error_code();
}

std::error_code FileStage::sync()
{
    // Some disks cannot be asked.
    const bool failed = ::fsync(m_file.handle()) != 0 && errno != EINVAL && errno != ENOTSUP;
    return failed ? lastError() : std::error_code();
}

std::error_code FileStage::replace()
{
    if (const std::error_code error = giveName())
        return error;
    const std::error_code error = rename(m_name, m_target);
    if (!error)
        m_name.clear();
    return error;
}

std::error_code FileStage::create()
{
    if (m_name.isEmpty()) {
        const QByteArray from = pathOf(m_file.handle());
        const bool isDone =
            ::linkat(AT_FDCWD, from.constData(), AT_FDCWD, m_target.constData(), AT_SYMLINK_FOLLOW)
            == 0;
        return isDone ? std::error_code() : lastError();
    }
    const std::error_code error = NewName::give(m_name, m_target);
    if (!error)
        m_name.clear();
    return error;
}

#else

void FileStage::open()
{
    for (int i = 0; i < mostTries && !m_file.isOpen(); ++i) {
        m_file.setFileName(StageName::make(QFile::decodeName(m_folder)));
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly) && !m_file.exists())
            break;
    }
    if (m_file.isOpen())
        m_name = QFile::encodeName(m_file.fileName());
    else
        m_error = std::make_error_code(std::errc::permission_denied);
}

std::error_code FileStage::sync()
{
    return {};
}

std::error_code FileStage::replace()
{
    // An open file cannot be moved here.
    m_file.close();
    const std::error_code error = rename(m_name, m_target);
    if (!error)
        m_name.clear();
    return error;
}

std::error_code FileStage::create()
{
    m_file.close();
    if (const std::error_code error = NewName::give(m_name, m_target))
        return error;
    m_name.clear();
    return {};
}

#endif
