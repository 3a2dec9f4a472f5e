#include "DownloadStage.h"

#include "Log.h"
#include "StageFolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QThreadPool>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
/// What the engine adds while it writes.
constexpr auto engineEnding = ".download"_L1;
/// Milliseconds in which the engine, told to give a download up, may make its folder once more.
constexpr int writersEnd = 1500;

bool isPlainFile(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() && !info.isSymLink();
}
}

DownloadStage::DownloadStage(const QString &folder)
    : m_folder(std::make_unique<StageFolder>(folder, StageName::Kind::Download))
{
}

DownloadStage::DownloadStage(std::unique_ptr<StageFolder> folder)
    : m_folder(std::move(folder))
{
}

DownloadStage::~DownloadStage() = default;

std::unique_ptr<DownloadStage> DownloadStage::take(const QString &path)
{
    // The path comes from a file that anybody may have written.
    if (!StageName::matches(QFileInfo(path).fileName(), StageName::Kind::Download))
        return nullptr;
    std::unique_ptr<StageFolder> folder = StageFolder::take(path);
    if (!folder)
        return nullptr;
    return std::unique_ptr<DownloadStage>(new DownloadStage(std::move(folder)));
}

void DownloadStage::drop(std::unique_ptr<DownloadStage> stage)
{
    if (!stage || stage->m_folder->isKept())
        return;
    std::shared_ptr<DownloadStage> gone = std::move(stage);
    QThreadPool::globalInstance()->start([gone] { gone->m_folder->remove(); });
    QTimer::singleShot(writersEnd, QCoreApplication::instance(), [gone]() mutable {
        QThreadPool::globalInstance()->start([last = std::move(gone)] {});
    });
}

bool DownloadStage::isValid() const
{
    return m_folder->isValid();
}

std::error_code DownloadStage::error() const
{
    return m_folder->error();
}

bool DownloadStage::isThere() const
{
    return m_folder->isThere();
}

QString DownloadStage::path() const
{
    return m_folder->path();
}

QString DownloadStage::file() const
{
    return m_folder->filePath(u"part"_s);
}

QString DownloadStage::arrived() const
{
    for (const QString &path : {file(), file() + engineEnding}) {
        if (isPlainFile(path))
            return path;
    }
    return {};
}

void DownloadStage::setAside()
{
    const QString partial = file() + engineEnding;
    if (isPlainFile(partial) && !QFileInfo::exists(file()) && !QFile::rename(partial, file()))
        qCWarning(lcFiles) << "not kept for later:" << partial;
}

void DownloadStage::keep()
{
    m_folder->keep();
}
