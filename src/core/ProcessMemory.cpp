#include "ProcessMemory.h"

#include "ProcessStat.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QList>
#include <numeric>
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

QString folderOf(qint64 process)
{
    return u"/proc/%1/"_s.arg(process);
}

/// Bytes by the two numbers of pages that cost the system nothing to tell.
struct Pages {
    qint64 resident = 0;
    /// Of those what other processes may have as well.
    qint64 shared = 0;
};

Pages pagesOf(const QString &folder)
{
    const QList<QByteArray> numbers = contents(folder + "statm"_L1).split(' ');
    const qint64 size = sysconf(_SC_PAGESIZE);
    return {numbers.value(1).toLongLong() * size, numbers.value(2).toLongLong() * size};
}

qint64 shareOf(const QString &folder)
{
    const qint64 share = valueOf(contents(folder + "smaps_rollup"_L1), "\nPss:");
    if (share >= 0)
        return share;
    const Pages pages = pagesOf(folder);
    return pages.resident - pages.shared;
}

/// The folders that tell of this process and of all that come from it.
QStringList familyFolders()
{
    QHash<qint64, QList<qint64>> children;
    for (const QString &name : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs))
        children[ProcessStat::parent(name.toLongLong())].append(name.toLongLong());
    QList<qint64> ahead{QCoreApplication::applicationPid()};
    QStringList folders;
    while (!ahead.isEmpty()) {
        const qint64 process = ahead.takeLast();
        folders.append(folderOf(process));
        ahead.append(children.take(process));
    }
    return folders;
}
}

namespace ProcessMemory {

qint64 used(qint64 limit)
{
    const QStringList folders = familyFolders();
    const auto sum = [&folders](auto &&bytesOf) {
        return std::accumulate(
            folders.cbegin(), folders.cend(), qint64(0),
            [&](qint64 bytes, const QString &folder) { return bytes + bytesOf(folder); });
    };
    const qint64 atMost = sum([](const QString &folder) { return pagesOf(folder).resident; });
    return atMost <= limit ? atMost : sum(shareOf);
}

qint64 of(qint64 process)
{
    return shareOf(folderOf(process));
}

qint64 available()
{
    return qMax<qint64>(0, valueOf(contents(u"/proc/meminfo"_s), "\nMemAvailable:"));
}

}
