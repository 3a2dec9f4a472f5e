#include "FinalFile.h"

#include "DownloadProblem.h"
#include "DownloadStage.h"
#include "FileMarks.h"
#include "FileName.h"
#include "FileWriter.h"
#include "Log.h"
#include "NewName.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
using Problem = Download::Problem;
using FinalFile::Result;

constexpr int mostNames = 100'000;

/// An open file, by its descriptor.
class Handle {
public:
    explicit Handle(const QString &path)
        : m_file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC))
    {
    }
    ~Handle()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    int get() const { return m_file; }

private:
    int m_file;
};

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

Result failed(const std::error_code &error)
{
    return {{}, DownloadProblem::of(error), QString::fromLocal8Bit(error.message().c_str())};
}

/// Not where the disk cannot do such a thing at all.
bool isFailure(const std::error_code &error)
{
    return error && error != std::errc::invalid_argument && error != std::errc::not_supported;
}

/// What the system gives a file that a program makes, which the engine does not: others may read
/// it as the user wants it for all his files. The process's mask cannot be asked without changing
/// it, but for here.
mode_t modeOfNewFiles()
{
    QFile status(u"/proc/self/status"_s);
    mode_t mask = S_IWGRP | S_IWOTH;
    if (status.open(QIODevice::ReadOnly)) {
        const QByteArray bytes = status.readAll();
        const qsizetype at = bytes.indexOf("\nUmask:");
        constexpr qsizetype word = 7;
        bool isNumber = false;
        const uint told =
            bytes.mid(at + word, 16).simplified().split(' ').first().toUInt(&isNumber, 8);
        if (at >= 0 && isNumber)
            mask = told;
    }
    constexpr mode_t all = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    return all & ~mask;
}

/// On a disk without permissions there is nothing to take away.
std::error_code setMode(int file)
{
    static const mode_t mode = modeOfNewFiles();
    if (::fchmod(file, mode) == 0)
        return {};
    const std::error_code error = lastError();
    qCWarning(lcFiles) << "the permissions of a download cannot be set:" << error.message().c_str();
    const bool hasNone = error == std::errc::operation_not_permitted || !isFailure(error);
    return hasNone ? std::error_code() : error;
}

std::error_code prepare(int file, const Download &download)
{
    if (const std::error_code error = setMode(file))
        return error;
    FileMarks::set(file, download);
    const std::error_code error = ::fsync(file) == 0 ? std::error_code() : lastError();
    return isFailure(error) ? error : std::error_code();
}

/// What a file was given as its name, or why it got none.
struct Named {
    QString name;
    std::error_code error;
};

QString pathOf(const Download &download)
{
    const QString path = download.path();
    return download.place == Download::Place::Replaced ? FileWriter::target(path) : path;
}

Named giveFreeName(const Download &download, const QString &from)
{
    // What names it may come from a file that anybody may have written.
    const QString wanted = download.place == Download::Place::Proposed
        ? FileName::from(download.name, {}, u"download"_s)
        : download.name;
    QString name = wanted;
    for (int number = 1; number < mostNames; ++number) {
        const QString path = download.folder + u'/' + name;
        const std::error_code error =
            NewName::give(QFile::encodeName(from), QFile::encodeName(path));
        if (error != std::errc::file_exists)
            return {name, error};
        name = FileName::numbered(wanted, number);
    }
    return {{}, std::make_error_code(std::errc::file_exists)};
}

/// In one step, over the file that the user has agreed to lose. A link stays one.
Named replace(const Download &download, const QString &from)
{
    const QString path = pathOf(download);
    const QFileInfo old(path);
    if (old.isSymLink() || (old.exists() && (!old.isFile() || !old.isWritable())))
        return {{}, std::make_error_code(std::errc::permission_denied)};
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(path).constData()) != 0)
        return {{}, lastError()};
    return {download.name, {}};
}

bool copy(const QString &from, QFileDevice &to)
{
    constexpr qint64 piece = 1024 * 1024;
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        return false;
    while (!source.atEnd()) {
        const QByteArray bytes = source.read(piece);
        if (bytes.isEmpty() || to.write(bytes) != bytes.size())
            return false;
    }
    return true;
}

Result placeOn(const Download &download, const DownloadStage &stage, bool mayCopy);

/// The user has chosen a place on another disk: there as here, what has the name is whole.
Result placeCopy(const Download &download, const QString &from)
{
    const DownloadStage there(QFileInfo(pathOf(download)).path());
    if (!there.isValid())
        return failed(there.error());
    const WriteResult copied = FileWriter::create(
        there.file(), [&from](QFileDevice &device) { return copy(from, device); },
        FileWriter::Sync::Later);
    if (!copied)
        return {{}, DownloadProblem::of(copied), copied.detail()};
    return placeOn(download, there, false);
}

Result placeOn(const Download &download, const DownloadStage &stage, bool mayCopy)
{
    const Handle file(stage.file());
    struct stat status = {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0)
        return failed(lastError());
    if (!S_ISREG(status.st_mode))
        return {{}, Problem::WriteError, u"not a file"_s};
    if (download.size >= 0 && status.st_size != download.size) {
        const QString both = u"%1 of %2"_s.arg(status.st_size).arg(download.size);
        return {{}, Problem::WrongLength, both, status.st_size};
    }
    if (const std::error_code error = prepare(file.get(), download))
        return failed(error);
    const bool replaces = download.place == Download::Place::Replaced;
    const Named named =
        replaces ? replace(download, stage.file()) : giveFreeName(download, stage.file());
    if (mayCopy && named.error == std::errc::cross_device_link)
        return placeCopy(download, stage.file());
    if (named.error)
        return failed(named.error);
    FileWriter::syncFolder(QFileInfo(pathOf(download)).path());
    return {named.name, Problem::None, {}, status.st_size};
}
}

FinalFile::Result FinalFile::place(const Download &download, const DownloadStage &stage)
{
    return placeOn(download, stage, true);
}
