#pragma once

#include "TextEncoding.h"

#include <QByteArray>
#include <QString>

class QIODevice;

/// Source text and the form that a file gives it: encoding and line ends. Copies share the text.
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
    bool writeUtf8(QIODevice &device) const;

    QString m_text;
    TextEncoding::Encoding m_encoding = TextEncoding::Encoding::Utf8;
    LineEnd m_lineEnd = LineEnd::CrLf;
    QByteArray m_read;
    /// How long the text was that was read.
    qsizetype m_readLength = -1;
};
