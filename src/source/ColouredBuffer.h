#pragma once

#include "ColouredText.h"

/// The text of an editor and its colours, kept beside the editor's own document. Colours are no
/// part of what the document can undo; text that an undo brings back has its old colours again
/// because the latest removals are remembered.
class ColouredBuffer {
public:
    const QString &text() const { return m_all.text; }
    const QByteArray &colours() const { return m_all.colours; }
    const QList<int> &palette() const { return m_all.palette; }
    int colourAt(qsizetype at) const { return m_all.palette.at(uchar(m_all.colours.at(at))); }

    /// Replaces everything; removals are forgotten.
    void set(const ColouredText &all);
    void setColours(const QByteArray &colours);
    void setColours(qsizetype from, QByteArrayView colours);
    void setColour(qsizetype from, qsizetype length, int colour);
    char indexOf(int colour) { return m_all.indexOf(colour); }

    /// Takes `removed` characters out at `at` and puts `inserted` there, coloured `colour`, or as
    /// it was when it was the same text that was taken out there.
    void replace(qsizetype at, qsizetype removed, const QString &inserted, int colour);

    /// The colour of text typed at `at`: that of the character before it on its line, else of the
    /// one after it.
    int typingColour(qsizetype at) const;

private:
    struct Removal {
        qsizetype at;
        QString text;
        QByteArray colours;
    };

    void remember(qsizetype at, qsizetype length);

    ColouredText m_all;
    QList<Removal> m_removals;
};
