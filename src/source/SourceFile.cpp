#include "SourceFile.h"

#include "LineEnds.h"

#include <QIODevice>

using namespace Qt::StringLiterals;

namespace {

/// Characters written at once.
constexpr qsizetype piece = 100'000;

bool writeAll(QIODevice &device, const QByteArray &bytes)
{
    return device.write(bytes) == bytes.size();
}

}

SourceFile SourceFile::fromBytes(const QByteArray &bytes)
{
    const QString text = TextEncoding::decode(bytes);
    const qsizetype pairs = text.count("\r\n"_L1);
    const qsizetype feeds = text.count(u'\n') - pairs;
    const qsizetype returns = text.count(u'\r') - pairs;
    SourceFile file;
    file.m_encoding = TextEncoding::detect(bytes);
    file.m_lineEnd = feeds > pairs && feeds >= returns ? LineEnd::Lf
        : returns > pairs                              ? LineEnd::Cr
                                                       : LineEnd::CrLf;
    file.m_text = LineEnds::toLf(text);
    file.m_read = bytes;
    file.m_readLength = file.m_text.size();
    return file;
}

bool SourceFile::isAsRead() const
{
    return m_text.size() == m_readLength && LineEnds::toLf(TextEncoding::decode(m_read)) == m_text;
}

QString SourceFile::withLineEnds(const QString &text) const
{
    switch (m_lineEnd) {
    case LineEnd::Lf:
        return text;
    case LineEnd::Cr:
        return LineEnds::fromLf(text, "\r"_L1);
    case LineEnd::CrLf:
        break;
    }
    return LineEnds::fromLf(text);
}

bool SourceFile::write(QIODevice &device) const
{
    if (isAsRead())
        return writeAll(device, m_read);
    // Whether the old code page will do is known once all of the text was looked at.
    if (m_encoding == TextEncoding::Encoding::Windows1252)
        return writeAll(device, TextEncoding::encode(withLineEnds(m_text), m_encoding));
    return writeUtf8(device);
}

bool SourceFile::writeUtf8(QIODevice &device) const
{
    // Only before the first piece may there be a mark.
    qsizetype from = 0;
    do {
        qsizetype to = qMin(from + piece, m_text.size());
        if (to < m_text.size() && m_text.at(to - 1).isHighSurrogate())
            ++to;
        const QString part = withLineEnds(m_text.mid(from, to - from));
        if (!writeAll(device, from == 0 ? TextEncoding::encode(part, m_encoding) : part.toUtf8()))
            return false;
        from = to;
    } while (from < m_text.size());
    return true;
}
