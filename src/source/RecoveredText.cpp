#include "RecoveredText.h"

#include "AppFolder.h"
#include "Log.h"
#include "SourceFile.h"

#include <QDateTime>
#include <QDir>
#include <QSaveFile>

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
    QSaveFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || !source.write(file) || !file.commit()) {
        qCWarning(lcFiles) << "cannot keep a copy of edited source" << file.errorString();
        return {};
    }
    return file.fileName();
}

}
