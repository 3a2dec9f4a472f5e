#include "ColouredBuffer.h"

#include <algorithm>

namespace {
constexpr qsizetype mostRemovals = 200;
constexpr qsizetype longestRemoval = 4'000'000;
}

void ColouredBuffer::set(const ColouredText &all)
{
    m_all = all;
    m_removals.clear();
}

void ColouredBuffer::setColours(const QByteArray &colours)
{
    Q_ASSERT(colours.size() == m_all.text.size());
    m_all.colours = colours;
}

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

void ColouredBuffer::remember(qsizetype at, qsizetype length)
{
    if (length == 0 || length > longestRemoval)
        return;
    if (m_removals.size() == mostRemovals)
        m_removals.removeFirst();
    m_removals.append({at, m_all.text.mid(at, length), m_all.colours.mid(at, length)});
}

void ColouredBuffer::replace(qsizetype at, qsizetype removed, const QString &inserted, int colour)
{
    QByteArray colours(inserted.size(), indexOf(colour));
    for (qsizetype i = m_removals.size() - 1; i >= 0 && !inserted.isEmpty(); --i) {
        const Removal &removal = m_removals.at(i);
        if (removal.at == at && removal.text == inserted) {
            colours = removal.colours;
            m_removals.removeAt(i);
            break;
        }
    }
    remember(at, removed);
    m_all.text.replace(at, removed, inserted);
    m_all.colours.replace(at, removed, colours);
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
