#include "ShippedFiles.h"

#include "FileWriter.h"
#include "Log.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>

using namespace Qt::StringLiterals;

namespace {
/// The hash of each file as it was brought, by its path in the folder.
using Record = QMap<QString, QByteArray>;

constexpr auto recordName = "Shipped.txt"_L1;
/// More than any file that ships, bytes.
constexpr qint64 largest = 16 * 1024 * 1024;

QByteArray hashOf(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

/// Nothing where it is no plain file that can be read.
std::optional<QByteArray> read(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > largest || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

Record readRecord(const QString &path)
{
    Record record;
    const QList<QByteArray> lines = read(path).value_or(QByteArray()).split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype blank = line.indexOf(' ');
        if (blank > 0)
            record.insert(QString::fromUtf8(line.mid(blank + 1).trimmed()), line.first(blank));
    }
    return record;
}

QByteArray bytesOf(const Record &record)
{
    QByteArray bytes;
    for (const auto &[name, hash] : record.asKeyValueRange())
        bytes += hash + ' ' + name.toUtf8() + "\r\n";
    return bytes;
}

/// Of one file. The record says afterwards how it came, or that it is the user's own.
class Bringing {
public:
    Bringing(const QString &target, QByteArray bytes)
        : m_target(target)
        , m_bytes(std::move(bytes))
        , m_hash(hashOf(m_bytes))
    {
    }

    bool run(QByteArray &recorded) const
    {
        if (recorded == m_hash)
            return true;
        // Links that lead nowhere are the user's, too.
        const QFileInfo target(m_target);
        if (!target.exists() && !target.isSymLink())
            return !recorded.isEmpty() || bringNew(recorded);
        const std::optional<QByteArray> there = read(m_target);
        if (!there)
            return true;
        const QByteArray hash = hashOf(*there);
        if (hash == m_hash)
            recorded = m_hash;
        else if (hash == recorded)
            return replace(recorded);
        return true;
    }

private:
    bool bringNew(QByteArray &recorded) const
    {
        if (!QDir().mkpath(QFileInfo(m_target).path()))
            return false;
        const WriteResult result = FileWriter::create(m_target, m_bytes);
        if (result)
            recorded = m_hash;
        return result || result.isFailure(WriteResult::Failure::Taken);
    }
    bool replace(QByteArray &recorded) const
    {
        if (!FileWriter::write(m_target, m_bytes))
            return false;
        recorded = m_hash;
        return true;
    }

    QString m_target;
    QByteArray m_bytes;
    QByteArray m_hash;
};
}

namespace ShippedFiles {

bool bring(const QString &from, const QString &to)
{
    const QString recordPath = to + u'/' + recordName;
    const Record before = readRecord(recordPath);
    Record record = before;
    bool isWhole = true;
    QDirIterator files(from, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        const QString name = QDir(from).relativeFilePath(file);
        const std::optional<QByteArray> bytes = read(file);
        if (!bytes || name == recordName)
            continue;
        QByteArray &recorded = record[name];
        isWhole = Bringing(to + u'/' + name, *bytes).run(recorded) && isWhole;
        if (recorded.isEmpty())
            record.remove(name);
    }
    if (record != before)
        isWhole = FileWriter::write(recordPath, bytesOf(record)) && isWhole;
    if (!isWhole)
        qCWarning(lcStart) << "not all that ships could be brought to" << to;
    return isWhole;
}

}
