#include "ColouredBuffer.h"

#include <algorithm>

void ColouredBuffer::setColours(qsizetype from, QByteArrayView colours)
{
    std::copy(colours.begin(), colours.end(), m_all.colours.data() + from);
}

void ColouredBuffer::setColour(qsizetype from, qsizetype length, int colour)
{
    const char index = indexOf(colour);
    char *start = m_all.colours.data() + from;
    std::fill(start, start + length, index);
}

void ColouredBuffer::replace(qsizetype at, qsizetype removed, const QString &inserted,
                             const QByteArray &colours)
{
    Q_ASSERT(colours.size() == inserted.size());
    // No text is copied where all of it is another.
    if (removed == m_all.text.size()) {
        m_all.text = inserted;
        m_all.colours = colours;
        return;
    }
    m_all.text.replace(at, removed, inserted);
    m_all.colours.replace(at, removed, colours);
}

void ColouredBuffer::makeRoom()
{
    constexpr qsizetype least = 64 * 1024;
    const qsizetype size = m_all.text.size() + qMax(least, m_all.text.size() / 4);
    m_all.text.reserve(size);
    m_all.colours.reserve(size);
}

int ColouredBuffer::typingColour(qsizetype at) const
{
    const QString &text = m_all.text;
    if (at > 0 && text.at(at - 1) != u'\n')
        return colourAt(at - 1);
    if (at < text.size() && text.at(at) != u'\n')
        return colourAt(at);
    return at > 0 ? colourAt(at - 1) : m_all.palette.constFirst();
}
