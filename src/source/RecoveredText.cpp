#include "RecoveredText.h"

#include "AppFolder.h"
#include "FileWriter.h"
#include "Log.h"
#include "SourceFile.h"

#include <QDateTime>
#include <QDir>
#include <QFileDevice>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostCopies = 30;

void makeRoom(const QDir &folder)
{
    const QStringList copies = folder.entryList({u"Source-*.html"_s}, QDir::Files, QDir::Name);
    for (qsizetype i = 0; i + mostCopies <= copies.size(); ++i)
        QFile::remove(folder.filePath(copies.at(i)));
}

}

namespace RecoveredText {

QString folder()
{
    return AppFolder::appData(u"Recovered"_s);
}

WriteResult keep(const SourceFile &source, QString *file)
{
    const QDir folder(RecoveredText::folder());
    if (!folder.mkpath(u"."_s)) {
        qCWarning(lcFiles) << "cannot make" << folder.path();
        return WriteResult(WriteResult::Failure::FolderMissing);
    }
    makeRoom(folder);
    const QString time = QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss-zzz"_s);
    QString name;
    for (int i = 0; name.isEmpty() || folder.exists(name); ++i)
        name = u"Source-%1-%2.html"_s.arg(time).arg(i, 2, 10, QChar(u'0'));
    const QString path = folder.filePath(name);
    if (file)
        *file = path;
    return FileWriter::create(path,
                              [&source](QFileDevice &device) { return source.write(device); });
}

}
