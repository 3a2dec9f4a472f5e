#include "ProcessMemory.h"

#include <QDir>
#include <QFile>
#include <QList>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

/// The fields of a process's state from the third on; its name may hold blanks and brackets.
QList<QByteArray> state(const QString &process)
{
    const QByteArray stat = contents("/proc/"_L1 + process + "/stat"_L1);
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ');
}

qint64 parentOf(const QString &process)
{
    return state(process).value(1).toLongLong();
}

QList<qint64> tree(qint64 root)
{
    QHash<qint64, QList<qint64>> children;
    const QStringList names = QDir(u"/proc"_s).entryList(QDir::Dirs);
    for (const QString &name : names) {
        bool number = false;
        const qint64 process = name.toLongLong(&number);
        if (number)
            children[parentOf(name)].append(process);
    }
    QList<qint64> result{root};
    for (qsizetype next = 0; next < result.size(); ++next)
        result += children.value(result.at(next));
    return result;
}

qint64 memory(qint64 process)
{
    const QByteArray rollup = contents(u"/proc/%1/smaps_rollup"_s.arg(process));
    const qsizetype at = rollup.indexOf("\nPss:");
    return at < 0 ? 0 : rollup.mid(at + 5, 30).trimmed().split(' ').first().toLongLong();
}

}

qint64 processCount(qint64 root)
{
    return tree(root).size();
}

qint64 treeMemory(qint64 root)
{
    qint64 sum = 0;
    for (const qint64 process : tree(root))
        sum += memory(process);
    return sum;
}

qint64 treeProcessorTime(qint64 root)
{
    qint64 ticks = 0;
    for (const qint64 process : tree(root)) {
        const QList<QByteArray> fields = state(QString::number(process));
        ticks += fields.value(11).toLongLong() + fields.value(12).toLongLong();
    }
    return ticks * 1000 / sysconf(_SC_CLK_TCK);
}
