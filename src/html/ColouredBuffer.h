#pragma once

#include "ColouredText.h"

/// The text of an editor and its colours.
class ColouredBuffer {
public:
    const QString &text() const { return m_all.text; }
    qsizetype size() const { return m_all.text.size(); }
    const QByteArray &colours() const { return m_all.colours; }
    const QList<int> &palette() const { return m_all.palette; }
    int colourAt(qsizetype at) const { return m_all.palette.at(uchar(m_all.colours.at(at))); }

    /// Replaces everything.
    void set(const ColouredText &all) { m_all = all; }
    void setColours(qsizetype from, QByteArrayView colours);
    void setColour(qsizetype from, qsizetype length, int colour);
    char indexOf(int colour) { return m_all.indexOf(colour); }

    /// Takes `removed` characters out at `at` and puts `inserted` there; `colours` is as long.
    void replace(qsizetype at, qsizetype removed, const QString &inserted,
                 const QByteArray &colours);

    /// Gives text and colours memory of their own with room to grow: an edit of text that others
    /// hold too, or that fills its memory, copies all of it.
    void makeRoom();

    /// The colour of text typed at `at`: that of the character before it on its line, else of the
    /// one after it.
    int typingColour(qsizetype at) const;

private:
    ColouredText m_all;
};
