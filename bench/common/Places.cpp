#include "Places.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

QProcessEnvironment FreshHome::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, path());
    for (const QString &name : {u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s, u"XDG_CACHE_HOME"_s})
        environment.insert(name, m_folder.filePath(name));
    return environment;
}

void FreshHome::use() const
{
    const QProcessEnvironment own = environment();
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(name, QFile::encodeName(own.value(QString::fromLatin1(name))));
}

void makeQuietFolder(const QString &path)
{
    makeFolder(path, "[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n");
}

void makeFolder(const QString &path, const QByteArray &settings)
{
    QFile file(path + "/AppData/Settings.ini"_L1);
    if (!QDir(path).mkpath(u"AppData"_s) || !QDir(path).mkpath(u"Profiles"_s)
        || !file.open(QIODevice::WriteOnly) || file.write(settings) < 0)
        qFatal("no application folder");
}

bool drawsInSoftware()
{
    return QDir(u"/dev/dri"_s).entryList({u"renderD*"_s}, QDir::System).isEmpty();
}
