#include "Leftovers.h"

#include "FileUpdate.h"
#include "FolderLock.h"
#include "Log.h"
#include "StageFolder.h"
#include "StageName.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {
#ifdef Q_OS_UNIX
/// The lock of a file or folder, which its maker has while he lives.
class Claim {
public:
    explicit Claim(const QString &path)
        : m_file(::open(QFile::encodeName(path).constData(),
                        O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC))
        , m_held(m_file >= 0 && ::flock(m_file, LOCK_EX | LOCK_NB) == 0)
    {
    }
    ~Claim()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    Claim(const Claim &) = delete;
    Claim &operator=(const Claim &) = delete;

    bool isHeld() const { return m_held; }

private:
    int m_file;
    bool m_held;
};
#else
/// Nobody can remove here what another has open.
struct Claim {
    explicit Claim(const QString &) { }
    bool isHeld() const { return true; }
};
#endif

void removeUnowned(const QString &path)
{
    const QFileInfo info(path);
    const bool isFolder = info.isDir();
    if (info.isSymLink() || !(isFolder || info.isFile()))
        return;
    const Claim claim(path);
    if (!claim.isHeld())
        return;
    if (isFolder ? QDir(path).removeRecursively() : QFile::remove(path))
        qCInfo(lcFiles) << "removed" << path << "that was left unfinished";
    else
        qCWarning(lcFiles) << "cannot remove" << path << "that was left unfinished";
}

/// Six letters in which capitals are strewn: people give words as endings, "backup", "BACKUP" or
/// "BackUp". What happens to look like one stays.
bool isOfOlderProgram(const QString &name)
{
    static const QRegularExpression shape(
        uR"(^(Settings\.ini|Engine\.ini|PopupURLs\.txt|Source-[-0-9]+\.html|.*\.orp)\.)"
        uR"((?=.*[a-z])(?!([A-Z]?[a-z]+)([A-Z][a-z]+)*$)[A-Za-z]{6}$)"_s);
    return shape.match(name).hasMatch();
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoSymLinks
                                  | QDir::NoDotAndDotDot);
}
}

namespace Leftovers {

const std::atomic<bool> neverStops = false;

void removeIn(const QString &folder, Depth depth, const std::atomic<bool> &stop)
{
    if (!QFileInfo(folder).isDir())
        return;
    {
        // Older programs lock the folder alone.
        const FolderLock lock(folder);
        for (const QString &name : entries(folder)) {
            if (StageName::matches(name) || (lock.isHeld() && isOfOlderProgram(name)))
                removeUnowned(folder + u'/' + name);
        }
    }
    if (depth == Depth::Folder)
        return;
    QDirIterator below(folder, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (!stop && below.hasNext()) {
        const QString path = below.next();
        if (StageName::matches(below.fileName()))
            removeUnowned(path);
    }
}

void removeNoted(const IsNeeded &isNeeded)
{
    const QDir notes(StageFolder::notes());
    for (const QString &name : notes.entryList(QDir::Files | QDir::Hidden)) {
        const QString note = notes.filePath(name);
        const auto bytes = FileUpdate::readAll(note);
        const QFileInfo folder(QString::fromUtf8(bytes.value_or(QByteArray())));
        const bool isNobodys = StageName::matches(folder.fileName())
            || (StageName::matches(folder.fileName(), StageName::Kind::Download)
                && !isNeeded(folder.filePath()));
        if (folder.isAbsolute() && isNobodys)
            removeUnowned(folder.filePath());
        // A folder that is there still has an owner or could not be removed.
        if (!folder.exists() && QFileInfo(folder.path()).isDir())
            QFile::remove(note);
    }
    QDir().rmdir(notes.path());
}

}
