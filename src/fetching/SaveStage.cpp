#include "SaveStage.h"

#include "FileName.h"
#include "FileWriter.h"
#include "Log.h"
#include "PageParts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QSet>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {
/// Leaves room for a number and for what the engine and the file system add. Bytes.
constexpr qsizetype longestBase = 200;

/// The folders of parts that saves going on are to make.
QSet<QString> awaited;
QMutex awaitedGuard;

/// A link is followed, and stays one.
QString resolved(const QString &target)
{
    const QFileInfo info(target);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink() || awaited.contains(path);
}

/// The engine does not write all signs so that a page finds its parts again.
QString plainBase(const QString &target)
{
    constexpr QStringView unfit(u"#%?&;:<>|*\"'`\\");
    QString base = QFileInfo(target).completeBaseName();
    for (QChar &character : base) {
        if (unfit.contains(character))
            character = u'_';
    }
    return FileName::cut(base, longestBase);
}

/// The target's name, or one like it, whose folder of parts is nobody's, and is this save's now.
QString awaitedName(const QString &target)
{
    const QMutexLocker guard(&awaitedGuard);
    const QFileInfo info(target);
    const QString ending = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    const QString base = plainBase(target);
    QString name = base + ending;
    for (int number = 2; isTaken(PageParts::folderOf(info.path() + u'/' + name)); ++number)
        name = u"%1 (%2)"_s.arg(base).arg(number) + ending;
    awaited.insert(PageParts::folderOf(info.path() + u'/' + name));
    return name;
}

/// In one step, over what is there.
bool replace(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(from).toStdString(),
                            QFile::encodeName(to).toStdString(), error);
    if (error)
        qCWarning(lcEngine) << "not saved:" << to << QString::fromStdString(error.message());
    return !error;
}
}

SaveStage::SaveStage(const QString &target)
    : m_target(resolved(target))
    , m_name(awaitedName(m_target))
    , m_parts(PageParts::folderOf(QFileInfo(m_target).path() + u'/' + m_name))
    , m_folder(QFileInfo(m_target).path())
{
}

SaveStage::~SaveStage()
{
    const QMutexLocker guard(&awaitedGuard);
    awaited.remove(m_parts);
}

/// The engine takes a page's parts for saved though the disk was full, and they end in the middle.
/// They fill it still, then.
bool SaveStage::isWhole() const
{
    constexpr qsizetype someRoom = 64 * 1024;
    QFile probe(m_folder.filePath(u"room"_s));
    const bool hasRoom = probe.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
        && probe.write(QByteArray(someRoom, 'x')) == someRoom && probe.flush();
    probe.remove();
    return hasRoom && QFileInfo(file()).size() > 0;
}

bool SaveStage::commit()
{
    if (!isWhole())
        return false;
    const QStringList oldParts = PageParts::of(m_target);
    if (QFileInfo::exists(m_target))
        QFile::setPermissions(file(), QFile::permissions(m_target));
    if (!listParts())
        return false;
    FileWriter::settle(QFileInfo(file()).path());
    if (!placeParts())
        return false;
    if (!replace(file(), m_target)) {
        takePartsBack();
        return false;
    }
    // Not before the new page is there to stay.
    FileWriter::settle(QFileInfo(m_target).path());
    for (const QString &parts : oldParts)
        PageParts::remove(parts);
    return true;
}

bool SaveStage::listParts() const
{
    const QString made = PageParts::folderOf(file());
    return !QFileInfo::exists(made)
        || PageParts::list(made, file(), QFileInfo(m_target).fileName());
}

/// From here on they belong to no page until there is the one that names them.
bool SaveStage::placeParts()
{
    const QString made = PageParts::folderOf(file());
    if (!QFileInfo::exists(made))
        return true;
    // Never over what somebody else made meanwhile.
    m_placed = QDir().rename(made, m_parts);
    if (!m_placed)
        qCWarning(lcEngine) << "not saved:" << m_parts;
    return m_placed;
}

void SaveStage::takePartsBack()
{
    if (m_placed && !QDir().rename(m_parts, PageParts::folderOf(file())))
        PageParts::remove(m_parts);
}
