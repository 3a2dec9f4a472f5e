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
    SourceFile file;
    file.m_order = Utf16Text::markedOrder(bytes);
    if (file.m_order)
        file.m_oddByte = Utf16Text::oddByte(bytes);
    else
        file.m_encoding = TextEncoding::detect(bytes);
    const QString text = file.decoded(bytes);
    const qsizetype pairs = text.count("\r\n"_L1);
    const qsizetype feeds = text.count(u'\n') - pairs;
    const qsizetype returns = text.count(u'\r') - pairs;
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
    return m_text.size() == m_readLength && LineEnds::toLf(decoded(m_read)) == m_text;
}

QString SourceFile::decoded(const QByteArray &bytes) const
{
    return m_order ? Utf16Text::decode(bytes, *m_order) : TextEncoding::decode(bytes);
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
    if (!m_order && m_encoding == TextEncoding::Encoding::Windows1252)
        return writeAll(device, TextEncoding::encode(withLineEnds(m_text), m_encoding));
    return writeInPieces(device) && writeAll(device, m_oddByte);
}

bool SourceFile::writeInPieces(QIODevice &device) const
{
    qsizetype from = 0;
    do {
        qsizetype to = qMin(from + piece, m_text.size());
        if (to < m_text.size() && m_text.at(to - 1).isHighSurrogate())
            ++to;
        if (!writeAll(device, encoded(withLineEnds(m_text.mid(from, to - from)), from == 0)))
            return false;
        from = to;
    } while (from < m_text.size());
    return true;
}

/// Only before the first piece there may be a mark.
QByteArray SourceFile::encoded(const QString &part, bool isFirst) const
{
    if (m_order) {
        const QByteArray bytes = Utf16Text::encode(part, *m_order);
        return isFirst ? Utf16Text::mark(*m_order) + bytes : bytes;
    }
    return isFirst ? TextEncoding::encode(part, m_encoding) : part.toUtf8();
}
