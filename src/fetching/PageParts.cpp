#include "PageParts.h"

#include "FileUpdate.h"
#include "FileWriter.h"
#include "Log.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {
const QString suffix = u"_files"_s;
const QString listName = u".orvane-saved"_s;
const QString nameKey = u"page"_s;
const QString stampKey = u"stamp"_s;
const QString filesKey = u"files"_s;

/// Tells a file from any other, and from itself once it was changed.
QString stampOf(const QFileInfo &file)
{
    return u"%1 %2"_s.arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
}

QJsonObject listIn(const QString &parts)
{
    const auto bytes = FileUpdate::readAll(QDir(parts).filePath(listName));
    return bytes ? QJsonDocument::fromJson(*bytes).object() : QJsonObject();
}

bool isFor(const QString &parts, const QFileInfo &page)
{
    const QJsonObject list = listIn(parts);
    return list.value(nameKey) == page.fileName() && list.value(stampKey) == stampOf(page);
}
}

namespace PageParts {

QString folderOf(const QString &file)
{
    const QFileInfo info(file);
    return info.path() + u'/' + info.completeBaseName() + suffix;
}

QStringList of(const QString &page)
{
    QStringList result;
    const QFileInfo info(page);
    if (!info.isFile())
        return result;
    QDirIterator folders(info.path(), QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    while (folders.hasNext()) {
        const QString folder = folders.next();
        if (folder.endsWith(suffix) && isFor(folder, info))
            result.append(folder);
    }
    return result;
}

bool list(const QString &parts, const QString &page, const QString &name)
{
    QJsonObject files;
    const QDir folder(parts);
    QDirIterator all(parts, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = all.next();
        files.insert(folder.relativeFilePath(path), stampOf(all.fileInfo()));
    }
    const QJsonObject list{
        {nameKey, name}, {stampKey, stampOf(QFileInfo(page))}, {filesKey, files}};
    return bool(FileWriter::write(folder.filePath(listName),
                                  QJsonDocument(list).toJson(QJsonDocument::Compact)));
}

void remove(const QString &parts)
{
    const QDir folder(QFileInfo(parts).canonicalFilePath());
    const QJsonObject files = listIn(parts).value(filesKey).toObject();
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QFileInfo info(folder.filePath(file.key()));
        // Whoever wrote the list, it names no file elsewhere.
        const bool isInside = info.canonicalFilePath() == folder.path() + u'/' + file.key();
        if (isInside && stampOf(info) == file.value().toString() && !QFile::remove(info.filePath()))
            qCWarning(lcFiles) << "cannot remove" << info.filePath();
    }
    QFile::remove(folder.filePath(listName));
    // Not what is in use for something else.
    QDir().rmdir(folder.path());
}

}
