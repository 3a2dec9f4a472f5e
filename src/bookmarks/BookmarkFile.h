#pragma once

#include <QByteArray>
#include <QFile>
#include <QStringDecoder>
#include <memory>

/// The bytes of a bookmark file, read in small steps and brought to UTF-8 where the file says that
/// it is written in something else: by its mark or in its first lines.
class BookmarkFile {
public:
    explicit BookmarkFile(const QString &path);

    /// False when it is no plain file, cannot be read, or is too large (512 MB).
    bool isGood() const { return m_good; }
    /// Reads some more; false when all is read or reading failed.
    bool readSome();
    qint64 size() const { return m_size; }
    const QByteArray &bytes() const { return m_bytes; }

private:
    void chooseEncoding(const QByteArray &start);
    void append(const QByteArray &bytes);

    QFile m_file;
    qint64 m_size = 0;
    bool m_good = false;
    bool m_begun = false;
    bool m_isWindows1252 = false;
    std::unique_ptr<QStringDecoder> m_decoder;
    QByteArray m_bytes;
};
