#include "WakingPages.h"

#include "AppFolder.h"
#include "FileUpdate.h"
#include "FileWriter.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {
QDir folder()
{
    return QDir(AppFolder::appData(u"Waking"_s));
}

QString fileOf(const QString &address)
{
    const QByteArray hash =
        QCryptographicHash::hash(address.toUtf8(), QCryptographicHash::Sha256).toHex();
    return folder().filePath(QString::fromLatin1(hash));
}
}

namespace WakingPages {

void begin(const QString &address)
{
    // The folder is missing at first.
    if (!QDir().mkpath(folder().path()))
        return;
    FileWriter::create(fileOf(address), address.toUtf8(), FileWriter::Sync::Later).leaveToLog();
}

void end(const QString &address)
{
    QFile::remove(fileOf(address));
    // With the last one.
    QDir().rmdir(folder().path());
}

QStringList left()
{
    QStringList addresses;
    const QStringList names = folder().entryList(QDir::Files);
    for (const QString &name : names) {
        const QByteArray bytes =
            FileUpdate::readAll(folder().filePath(name)).value_or(QByteArray());
        addresses.append(QString::fromUtf8(bytes));
    }
    return addresses;
}

void forgetAll()
{
    // Whatever is left of their contents.
    const QStringList names = folder().entryList(QDir::Files);
    for (const QString &name : names)
        QFile::remove(folder().filePath(name));
    QDir().rmdir(folder().path());
}

}
