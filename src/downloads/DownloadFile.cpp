#include "DownloadFile.h"

#include "AppFolder.h"
#include "DownloadList.h"
#include "DownloadRecord.h"
#include "IniStore.h"
#include "IniText.h"
#include "TextEncoding.h"

#include <QFileInfo>
#include <QHash>

using namespace Qt::StringLiterals;

namespace {
using IniText::Section;

QByteArray asUtf8(const QByteArray &file)
{
    return TextEncoding::detect(file) == TextEncoding::Encoding::Windows1252
        ? TextEncoding::decode(file).toUtf8()
        : file;
}

/// The sections of downloads as they count: the first of each.
QList<Section> entriesOf(const QByteArray &file)
{
    QList<Section> result;
    QSet<QByteArray> seen;
    for (const Section &section : IniText::sections(file)) {
        const QByteArray id = section.name.toByteArray().toLower();
        if (!DownloadRecord::isId(id) || seen.contains(id))
            continue;
        seen.insert(id);
        result.append(section);
    }
    return result;
}

/// Lines that a section has and those that say something; what the program does not know stays.
QByteArray put(const QByteArray &bytes, const Section *old, const Download &download)
{
    QStringList keys;
    QStringList values;
    for (const DownloadRecord::Line &line : DownloadRecord::lines(download)) {
        if (line.value.isEmpty() && (!old || old->value(line.key).isNull()))
            continue;
        keys.append(QString::fromLatin1(line.key));
        values.append(line.value);
    }
    return IniText::putKeys(bytes, download.id, keys, values).value_or(bytes);
}

/// A file made of another one and of changes to it.
class Merge {
public:
    Merge(const QByteArray &file, const DownloadFile::Changes &changes, QStringList &trimmed)
        : m_file(file)
        , m_removed(changes.removed)
        , m_new(changes.entries)
    {
        for (const Download &download : changes.entries)
            m_changed.insert(download.id, download);
        trim(trimmed);
    }

    QByteArray bytes()
    {
        const QList<Section> sections = IniText::sections(m_file);
        m_bytes = sections.isEmpty() ? m_file : m_file.first(sections.first().begin);
        for (const Section &section : sections)
            add(section);
        const bool hasOtherEnds = m_file.contains('\n') && !m_file.contains("\r\n");
        for (const Download &download : std::as_const(m_new)) {
            if (m_removed.contains(download.id) || m_seen.contains(download.id))
                continue;
            if (!m_bytes.isEmpty() && !m_bytes.endsWith('\n'))
                m_bytes += hasOtherEnds ? "\n" : "\r\n";
            const QByteArray added = put({}, nullptr, download);
            m_bytes += hasOtherEnds ? QByteArray(added).replace("\r\n", "\n") : added;
        }
        return m_bytes;
    }

private:
    void add(const Section &section)
    {
        const QString id = QString::fromUtf8(section.name).toLower();
        const QByteArray bytes = m_file.sliced(section.begin, section.end - section.begin);
        if (m_removed.contains(id)) {
            m_bytes += m_file.sliced(section.keysEnd, section.end - section.keysEnd);
        } else if (m_changed.contains(id) && !m_seen.contains(id)) {
            m_bytes += put(bytes, &section, m_changed.value(id));
            m_seen.insert(id);
        } else {
            m_bytes += bytes;
        }
    }

    /// The oldest stand first.
    void trim(QStringList &trimmed)
    {
        const QList<Section> entries = entriesOf(m_file);
        QSet<QString> ids;
        for (const Section &section : entries)
            ids.insert(QString::fromLatin1(section.name).toLower());
        for (const Download &download : std::as_const(m_new))
            ids.insert(download.id);
        qsizetype over = ids.subtract(m_removed).size() - DownloadList::most;
        for (const Section &section : entries) {
            if (over <= 0)
                return;
            const QString id = QString::fromLatin1(section.name).toLower();
            const std::optional<Download> download = DownloadRecord::read(section);
            if (!ids.contains(id) || m_changed.contains(id) || (download && !download->isOver()))
                continue;
            if (download && !download->stage.isEmpty())
                trimmed.append(download->stage);
            m_removed.insert(id);
            --over;
        }
    }

    const QByteArray &m_file;
    QSet<QString> m_removed;
    QList<Download> m_new;
    QHash<QString, Download> m_changed;
    QSet<QString> m_seen;
    QByteArray m_bytes;
};
}

namespace DownloadFile {

QString path()
{
    return AppFolder::appData(u"Downloads.ini"_s);
}

std::optional<QList<Download>> read(const QString &path)
{
    if (!QFileInfo::exists(path))
        return QList<Download>();
    const std::optional<QByteArray> bytes = readIniFile(path);
    if (!bytes)
        return {};
    const QByteArray file = asUtf8(*bytes);
    QList<Download> result;
    const QList<Section> sections = entriesOf(file);
    for (auto section = sections.crbegin(); section != sections.crend(); ++section) {
        if (result.size() == DownloadList::most)
            break;
        if (const std::optional<Download> download = DownloadRecord::read(*section))
            result.append(*download);
    }
    return result;
}

std::optional<QSet<QString>> stages(const QString &path)
{
    const std::optional<QList<Download>> downloads = read(path);
    if (!downloads)
        return {};
    QSet<QString> result;
    for (const Download &download : *downloads) {
        if (!download.stage.isEmpty())
            result.insert(download.stage);
    }
    return result;
}

WriteResult write(const QString &path, const Changes &changes, QStringList &trimmed)
{
    return changeIniFile(path, [&](const QByteArray &old) {
        trimmed.clear();
        return Merge(asUtf8(old), changes, trimmed).bytes();
    });
}

}
