#include "ProcessStat.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
// Counted behind the name.
constexpr int parentField = 1;
constexpr int userTimeField = 11;
constexpr int systemTimeField = 12;

/// The name, in brackets before them, may hold anything.
QList<QByteArray> fields(qint64 process)
{
    QFile file(u"/proc/%1/stat"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray line = file.readAll();
    return line.mid(line.lastIndexOf(')') + 2).split(' ');
}
}

namespace ProcessStat {

qint64 parent(qint64 process)
{
    return fields(process).value(parentField).toLongLong();
}

qint64 processorTime(qint64 process)
{
    const QList<QByteArray> all = fields(process);
    if (all.size() <= systemTimeField)
        return -1;
    constexpr qint64 second = 1000;
    const qint64 ticks = all.at(userTimeField).toLongLong() + all.at(systemTimeField).toLongLong();
    return ticks * second / sysconf(_SC_CLK_TCK);
}

}
