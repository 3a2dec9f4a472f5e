#include "StageFolder.h"

#include "AppFolder.h"
#include "FileWriter.h"
#include "FolderLock.h"
#include "Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {
std::error_code make(const QString &folder)
{
    errno = 0;
    if (QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        return {};
    return {errno == 0 ? EIO : errno, std::generic_category()};
}
}

StageFolder::StageFolder(const QString &parent, StageName::Kind kind)
    : m_path(StageName::make(QFileInfo(parent).absoluteFilePath(), kind))
{
    note();
    m_error = make(m_path);
    if (!m_error)
        m_lock = std::make_unique<FolderLock>(m_path);
    else
        qCWarning(lcFiles) << "cannot make" << m_path << m_error.message().c_str();
}

StageFolder::StageFolder(const QString &path, std::unique_ptr<FolderLock> lock)
    : m_path(path)
    , m_lock(std::move(lock))
{
    note();
}

StageFolder::~StageFolder()
{
    if (m_keeps)
        return;
    if (m_lock)
        remove();
    if (m_note.isEmpty())
        return;
    QFile::remove(m_note);
    // The last one takes the place of the notes along.
    QDir().rmdir(QFileInfo(m_note).path());
}

std::unique_ptr<StageFolder> StageFolder::take(const QString &path)
{
    const QFileInfo folder(path);
    if (!folder.isAbsolute() || folder.isSymLink() || !folder.isDir())
        return nullptr;
    auto lock = std::make_unique<FolderLock>(path, FolderLock::Wait::None);
    // Whoever removes it has the lock meanwhile.
    if (!lock->isHeld() || !QFileInfo::exists(path))
        return nullptr;
    return std::unique_ptr<StageFolder>(new StageFolder(path, std::move(lock)));
}

void StageFolder::remove()
{
    QDir folder(m_path);
    if (m_lock && folder.exists() && !folder.removeRecursively())
        qCWarning(lcFiles) << "cannot remove" << m_path;
}

bool StageFolder::isThere() const
{
    return m_lock && m_lock->isAt(m_path);
}

QString StageFolder::notes()
{
    return AppFolder::appData(u"Unfinished"_s);
}

/// Comes before the folder, or a kill in between would leave one that nobody knows of.
void StageFolder::note()
{
    const QString file = notes() + u'/' + QFileInfo(m_path).fileName().mid(1);
    const bool hasPlace = QFileInfo(notes()).isDir() || QDir().mkdir(notes());
    if (QFileInfo::exists(file)
        || (hasPlace && FileWriter::create(file, m_path.toUtf8(), FileWriter::Sync::Later)))
        m_note = file;
}
