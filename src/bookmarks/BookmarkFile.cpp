#include "BookmarkFile.h"
#include "Log.h"
#include "TextEncoding.h"

#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 largestFile = 512LL * 1024 * 1024;
constexpr qint64 bytesAtOnce = 1024 * 1024;
// A file's own word on its encoding stands near its start.
constexpr qsizetype declaredWithin = 4096;

QByteArray declaredEncoding(const QByteArray &start)
{
    static const QRegularExpression charset(u"<meta[^>]{0,500}charset\\s*=\\s*[\"']?([-\\w:.]+)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QString text = QString::fromLatin1(start.first(std::min(start.size(), declaredWithin)));
    return charset.match(text).captured(1).toLower().toLatin1();
}
}

BookmarkFile::BookmarkFile(const QString &path)
    : m_file(path)
{
    // Opening a pipe would wait for whoever writes to it.
    const QFileInfo info(path);
    m_size = info.size();
    m_good = info.isFile() && m_size <= largestFile
        && m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (!m_good)
        qCWarning(lcFiles) << "cannot read the bookmark file" << path << m_file.errorString();
    else
        m_bytes.reserve(m_size);
}

bool BookmarkFile::readSome()
{
    if (!m_good)
        return false;
    QByteArray part = m_file.read(bytesAtOnce);
    if (part.isEmpty()) {
        if (m_file.error() != QFileDevice::NoError) {
            qCWarning(lcFiles) << "cannot read" << m_file.fileName() << m_file.errorString();
            m_good = false;
        }
        return false;
    }
    if (!std::exchange(m_begun, true)) {
        chooseEncoding(part);
        if (part.startsWith("\xef\xbb\xbf"))
            part.remove(0, 3);
    }
    append(part);
    return m_bytes.size() <= largestFile;
}

void BookmarkFile::chooseEncoding(const QByteArray &start)
{
    if (start.startsWith("\xff\xfe") || start.startsWith("\xfe\xff")) {
        m_decoder = std::make_unique<QStringDecoder>(QStringConverter::Utf16);
        return;
    }
    const QByteArray name = declaredEncoding(start);
    if (name.isEmpty() || name.startsWith("utf") || start.startsWith("\xef\xbb\xbf"))
        return;
    // Who says Latin-1 means the code page that has quotes and dashes too.
    m_isWindows1252 = name == "windows-1252" || name == "iso-8859-1" || name == "us-ascii";
    if (m_isWindows1252)
        return;
    auto decoder = std::make_unique<QStringDecoder>(name.constData());
    if (decoder->isValid())
        m_decoder = std::move(decoder);
    else
        qCWarning(lcFiles) << "no such encoding:" << name;
}

void BookmarkFile::append(const QByteArray &bytes)
{
    using TextEncoding::Encoding;
    if (m_isWindows1252) {
        m_bytes += TextEncoding::decodePart(bytes, Encoding::Windows1252).toUtf8();
    } else if (m_decoder) {
        const QString text = m_decoder->decode(bytes);
        m_bytes += text.toUtf8();
    } else {
        m_bytes += bytes;
    }
}
