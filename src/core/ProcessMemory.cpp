#include "ProcessMemory.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QList>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 kilobyte = 1024;

QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The number behind `key` in lines of "Key:   12 kB", as bytes; -1: there is none.
qint64 valueOf(const QByteArray &text, QByteArrayView key)
{
    const qsizetype at = text.indexOf(key);
    if (at < 0)
        return -1;
    const qsizetype begin = at + key.size();
    const QByteArray number = text.mid(begin, text.indexOf(" kB", begin) - begin).trimmed();
    bool isNumber = false;
    const qint64 value = number.toLongLong(&isNumber);
    return isNumber ? value * kilobyte : -1;
}

/// The parent of a process; its name, in brackets before it, may hold anything.
qint64 parentOf(const QString &process)
{
    const QByteArray line = contents("/proc/"_L1 + process + "/stat"_L1);
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return fields.value(1).toLongLong();
}

qint64 memoryOf(qint64 process)
{
    const QString folder = u"/proc/%1/"_s.arg(process);
    const qint64 share = valueOf(contents(folder + "smaps_rollup"_L1), "\nPss:");
    if (share >= 0)
        return share;
    const QList<QByteArray> pages = contents(folder + "statm"_L1).split(' ');
    return (pages.value(1).toLongLong() - pages.value(2).toLongLong()) * sysconf(_SC_PAGESIZE);
}
}

namespace ProcessMemory {

qint64 used()
{
    QHash<qint64, QList<qint64>> children;
    for (const QString &name : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs))
        children[parentOf(name)].append(name.toLongLong());
    QList<qint64> family{QCoreApplication::applicationPid()};
    qint64 sum = 0;
    while (!family.isEmpty()) {
        const qint64 process = family.takeLast();
        sum += memoryOf(process);
        family.append(children.take(process));
    }
    return sum;
}

qint64 available()
{
    return qMax<qint64>(0, valueOf(contents(u"/proc/meminfo"_s), "\nMemAvailable:"));
}

}
