#include "StartPlace.h"

#include "AppFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {
/// Of the programs on one folder that may end one after the other while another starts.
constexpr int mostTries = 100;
}

#ifdef Q_OS_UNIX
namespace {
/// Nobody else reads it, writes in it or has put it there; a link would lead anywhere.
bool isOnlyMine(const QString &folder)
{
    struct stat found = {};
    return ::lstat(QFile::encodeName(folder).constData(), &found) == 0 && S_ISDIR(found.st_mode)
        && found.st_uid == ::geteuid() && (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

bool make(const QString &folder)
{
    ::mkdir(QFile::encodeName(folder).constData(), S_IRWXU);
    return isOnlyMine(folder);
}

/// Another program that ends may take either away in between; a start that went elsewhere for that
/// would not be found.
bool make(const QString &root, const QString &folder)
{
    for (int i = 0; i < mostTries; ++i) {
        if (make(root) && make(folder))
            return true;
    }
    return false;
}

/// A socket's name has little room; a new one is made beside its place, in a folder of its own.
bool hasRoom(const QString &folder)
{
    constexpr qsizetype besides = 16;
    return QFile::encodeName(StartPlace::socketIn(folder)).size() + besides
        < qsizetype(sizeof(sockaddr_un::sun_path));
}
}
#endif

QString StartPlace::folder()
{
#ifdef Q_OS_UNIX
    QStringList roots;
    if (const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
        QDir::isAbsolutePath(session) && isOnlyMine(session))
        roots.append(session + "/orvane"_L1);
    roots.append(QDir::tempPath() + "/orvane-"_L1 + QString::number(::geteuid()));
    for (const QString &root : std::as_const(roots)) {
        const QString folder = root + u'/' + AppFolder::mark();
        if (hasRoom(folder) && make(root, folder))
            return folder;
    }
#endif
    return {};
}

QString StartPlace::socketIn(const QString &folder)
{
    return folder + "/start"_L1;
}

StartPlace::StartPlace(const QString &folder)
    : m_folder(folder)
    , m_lock(folder, FolderLock::Wait::None)
{
}

/// Nobody else removes the folder, and who waits for it sees that it has gone.
StartPlace::~StartPlace()
{
    if (!m_lock.isHeld() || !m_lock.isAt(m_folder))
        return;
    QDir(m_folder).removeRecursively();
    // The last of the user's programs; where others run it is not empty.
    QDir().rmdir(QFileInfo(m_folder).path());
}

std::unique_ptr<StartPlace> StartPlace::take()
{
    for (int i = 0; i < mostTries; ++i) {
        const QString where = folder();
        if (where.isEmpty())
            break;
        std::unique_ptr<StartPlace> place(new StartPlace(where));
        if (place->m_lock.isAt(where))
            return place->m_lock.isHeld() ? std::move(place) : nullptr;
    }
    return nullptr;
}
