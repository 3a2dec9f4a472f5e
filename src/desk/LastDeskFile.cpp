#include "LastDeskFile.h"

#include "AppFolder.h"
#include "DeskFile.h"
#include "FileUpdate.h"
#include "FileWriter.h"
#include "Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype mostKept = 5;
/// Of one second.
constexpr int mostAlike = 100;

QString folder()
{
    return AppFolder::path() + "/Profiles"_L1;
}

QString mark()
{
    return AppFolder::appData(u"Running"_s);
}

QString keptName(const QDateTime &time, int number)
{
    const QString date = time.toLocalTime().toString(u"yyyy-MM-dd HH.mm.ss"_s);
    const QString more = number > 1 ? u' ' + QString::number(number) : QString();
    return "Last desk ("_L1 + date + more + ").orp"_L1;
}

/// What the user has named so himself stays, and so does `newest`, which is not the last by its
/// date where the clock was set back.
void removeOldest(const QString &newest)
{
    static const QRegularExpression shape(
        uR"(^Last desk \(\d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d( \d+)?\)\.orp$)"_s);
    QStringList names = QDir(folder()).entryList({u"Last desk (*).orp"_s}, QDir::Files, QDir::Name);
    names = names.filter(shape);
    names.removeOne(newest);
    for (qsizetype i = 0; i <= names.size() - mostKept; ++i) {
        if (!QFile::remove(folder() + u'/' + names.at(i)))
            qCWarning(lcFiles) << "cannot remove" << names.at(i);
    }
}
}

namespace LastDeskFile {

QString path()
{
    return folder() + "/Last desk.orp"_L1;
}

Left read()
{
    Left left;
    left.isCut = QFileInfo::exists(mark());
    left.bytes = FileUpdate::readAll(path()).value_or(QByteArray());
    left.time = QFileInfo(path()).lastModified();
    left.desk = DeskFile::read(left.bytes);
    return left;
}

WriteResult beginRun()
{
    const WriteResult result = FileWriter::create(mark(), QByteArray());
    return result.isFailure(WriteResult::Failure::Taken) ? WriteResult() : result;
}

void endRun()
{
    if (!QFile::remove(mark()) && QFileInfo::exists(mark()))
        qCWarning(lcFiles) << "cannot remove" << mark();
    FileWriter::syncFolder(QFileInfo(mark()).path());
}

WriteResult keep(const Left &left)
{
    for (int number = 1; number <= mostAlike; ++number) {
        const QString name = keptName(left.time, number);
        const WriteResult result = FileWriter::create(folder() + u'/' + name, left.bytes);
        if (result) {
            removeOldest(name);
            return result;
        }
        if (!result.isFailure(WriteResult::Failure::Taken))
            return result;
    }
    return WriteResult(WriteResult::Failure::Taken);
}

}
