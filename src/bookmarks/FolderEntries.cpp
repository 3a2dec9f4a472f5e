#include "FolderEntries.h"

#include <QFile>

#ifdef Q_OS_UNIX
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#else
#include <QDirIterator>
#include <QFileInfo>
#endif

#ifdef Q_OS_UNIX

struct FolderEntries::Folder {
    explicit Folder(const QString &path)
        : stream(::opendir(QFile::encodeName(path).constData()))
    {
    }
    ~Folder()
    {
        if (stream)
            ::closedir(stream);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    DIR *stream;
    const dirent *entry = nullptr;
};

namespace {
bool isSelfOrParent(QByteArrayView name)
{
    return name == "." || name == "..";
}

// What the entry is, or what it leads to where it is a link.
mode_t kindOf(DIR *folder, const dirent &entry)
{
    if (entry.d_type == DT_DIR)
        return S_IFDIR;
    if (entry.d_type == DT_REG)
        return S_IFREG;
    struct stat status = {};
    return ::fstatat(::dirfd(folder), entry.d_name, &status, 0) == 0 ? status.st_mode : 0;
}

bool isLinkItself(DIR *folder, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_LNK;
    struct stat status = {};
    return ::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0
        && S_ISLNK(status.st_mode);
}
}

bool FolderEntries::next()
{
    while (m_folder->stream) {
        m_folder->entry = ::readdir(m_folder->stream);
        if (!m_folder->entry)
            return false;
        const QByteArrayView bytes(m_folder->entry->d_name);
        if (isSelfOrParent(bytes) || !bytes.isValidUtf8())
            continue;
        m_name = QString::fromUtf8(bytes);
        const mode_t kind = kindOf(m_folder->stream, *m_folder->entry);
        m_isFolder = S_ISDIR(kind);
        m_isPlainFile = S_ISREG(kind);
        m_isLink = isLinkItself(m_folder->stream, *m_folder->entry);
        return true;
    }
    return false;
}

qint64 FolderEntries::size() const
{
    struct stat status = {};
    return ::fstatat(::dirfd(m_folder->stream), m_folder->entry->d_name, &status, 0) == 0
        ? status.st_size
        : 0;
}

#else

struct FolderEntries::Folder {
    explicit Folder(const QString &path)
        : iterator(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
    {
    }

    QDirIterator iterator;
};

bool FolderEntries::next()
{
    if (!m_folder->iterator.hasNext())
        return false;
    m_folder->iterator.next();
    const QFileInfo info = m_folder->iterator.fileInfo();
    m_name = info.fileName();
    m_isFolder = info.isDir();
    m_isLink = info.isSymLink();
    m_isPlainFile = !m_isFolder && info.isFile();
    return true;
}

qint64 FolderEntries::size() const
{
    return m_folder->iterator.fileInfo().size();
}

#endif

FolderEntries::FolderEntries(const QString &path)
    : m_folder(std::make_unique<Folder>(path))
{
}

FolderEntries::~FolderEntries() = default;
