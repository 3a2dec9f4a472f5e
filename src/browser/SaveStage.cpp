#include "SaveStage.h"

#include "Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {
/// A link is followed, and stays one.
QString resolved(const QString &target)
{
    const QFileInfo info(target);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

/// As the engine names the folder of a page's parts.
QString partsOf(const QString &file)
{
    const QFileInfo info(file);
    return info.path() + u'/' + info.completeBaseName() + "_files"_L1;
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
    , m_name(QFileInfo(m_target).fileName())
    , m_folder(QFileInfo(m_target).path() + "/.orvane-XXXXXX"_L1)
{
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
    if (QFileInfo::exists(m_target))
        QFile::setPermissions(file(), QFile::permissions(m_target));
    const QString parts = partsOf(m_target);
    const QString madeParts = partsOf(file());
    if (!QFileInfo::exists(madeParts))
        return replace(file(), m_target);
    const QString oldParts = m_folder.filePath(u"old"_s);
    const bool hadParts = QFileInfo::exists(parts);
    if (hadParts && !replace(parts, oldParts))
        return false;
    if (replace(madeParts, parts)) {
        if (replace(file(), m_target))
            return true;
        replace(parts, madeParts);
    }
    if (hadParts)
        replace(oldParts, parts);
    return false;
}
