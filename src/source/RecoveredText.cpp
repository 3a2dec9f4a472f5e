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

QString keep(const SourceFile &source)
{
    const QDir folder(RecoveredText::folder());
    if (!folder.mkpath(u"."_s)) {
        qCWarning(lcFiles) << "cannot make" << folder.path();
        return {};
    }
    makeRoom(folder);
    const QString time = QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss-zzz"_s);
    QString name;
    for (int i = 0; name.isEmpty() || folder.exists(name); ++i)
        name = u"Source-%1-%2.html"_s.arg(time).arg(i, 2, 10, QChar(u'0'));
    const QString file = folder.filePath(name);
    const bool isKept = bool(
        FileWriter::create(file, [&source](QFileDevice &device) { return source.write(device); }));
    return isKept ? file : QString();
}

}
