#pragma once

#include "TextEncoding.h"
#include "Utf16Text.h"

#include <QByteArray>
#include <QString>

class QIODevice;

/// Source text and the form that a file gives it: encoding and line ends. Copies share the text.
/// A file with the mark of UTF-16, in either byte order, is that; others are what TextEncoding
/// says.
class SourceFile {
public:
    /// The file's form, and its text with one line feed per line break.
    static SourceFile fromBytes(const QByteArray &bytes);

    const QString &text() const { return m_text; }
    /// The same form for another text.
    void setText(const QString &text) { m_text = text; }
    /// A text that is still the one read is written as the same bytes, mixed line ends and all.
    /// False when the device takes no more. It is written in pieces: the bytes of a long text are
    /// never all held.
    bool write(QIODevice &device) const;

private:
    enum class LineEnd { CrLf, Lf, Cr };

    bool isAsRead() const;
    QString withLineEnds(const QString &text) const;
    QString decoded(const QByteArray &bytes) const;
    bool writeInPieces(QIODevice &device) const;
    QByteArray encoded(const QString &part, bool isFirst) const;

    QString m_text;
    /// Set for UTF-16; `m_encoding` counts for other files only.
    std::optional<Utf16Text::Order> m_order;
    TextEncoding::Encoding m_encoding = TextEncoding::Encoding::Utf8;
    LineEnd m_lineEnd = LineEnd::CrLf;
    /// Half a unit at the end of a UTF-16 file: no text, but not ours to drop.
    QByteArray m_oddByte;
    QByteArray m_read;
    /// How long the text was that was read.
    qsizetype m_readLength = -1;
};
