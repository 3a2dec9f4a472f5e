#include "StageFolder.h"

#include "AppFolder.h"
#include "FileWriter.h"
#include "FolderLock.h"
#include "Log.h"
#include "StageName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

StageFolder::StageFolder(const QString &parent)
    : m_path(StageName::make(QFileInfo(parent).absoluteFilePath()))
{
    note();
    if (QDir().mkdir(m_path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        m_lock = std::make_unique<FolderLock>(m_path);
    else
        qCWarning(lcFiles) << "cannot make" << m_path;
}

StageFolder::~StageFolder()
{
    if (m_lock)
        remove();
    if (m_note.isEmpty())
        return;
    QFile::remove(m_note);
    // The last one takes the place of the notes along.
    QDir().rmdir(QFileInfo(m_note).path());
}

void StageFolder::remove()
{
    QDir folder(m_path);
    if (m_lock && folder.exists() && !folder.removeRecursively())
        qCWarning(lcFiles) << "cannot remove" << m_path;
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
    if (hasPlace && FileWriter::create(file, m_path.toUtf8(), FileWriter::Sync::Later))
        m_note = file;
}
