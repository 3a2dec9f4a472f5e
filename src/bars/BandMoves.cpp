#include "BandMoves.h"

#include "CoolBand.h"
#include "CoolBar.h"
#include "Twips.h"

#include <algorithm>

BandMoves::Row BandMoves::rowOf(CoolBand *band) const
{
    const QList<Row> rows = m_bar.rows();
    for (const Row &row : rows) {
        if (row.contains(band))
            return row;
    }
    return {};
}

// From now on the widths are the user's. The last band's shown width is what was left over.
void BandMoves::keepShownWidths(const Row &row)
{
    for (CoolBand *band : row.first(row.size() - 1))
        band->m_width = Twips::fromPixels(band->geometry().width());
}

void BandMoves::exchange(CoolBand *first, CoolBand *second)
{
    keepShownWidths(rowOf(first));
    m_bar.m_bands.removeOne(second);
    insertBefore(second, first);
}

void BandMoves::insertBefore(CoolBand *band, CoolBand *other)
{
    band->m_newRow = other->m_newRow;
    other->m_newRow = false;
    m_bar.m_bands.insert(m_bar.m_bands.indexOf(other), band);
}

// Takes the band out; what followed it in its row stays a row.
void BandMoves::detach(CoolBand *band)
{
    const Row row = rowOf(band);
    if (row.first() == band && row.size() > 1)
        row.at(1)->m_newRow = true;
    m_bar.m_bands.removeOne(band);
}

void BandMoves::toOwnRow(CoolBand *band, int beforeRow)
{
    const QList<Row> rows = m_bar.rows();
    Row next = beforeRow < rows.size() ? rows.at(beforeRow) : Row();
    next.removeOne(band);
    detach(band);
    band->m_newRow = true;
    if (next.isEmpty()) {
        m_bar.m_bands.append(band);
        return;
    }
    next.first()->m_newRow = true;
    m_bar.m_bands.insert(m_bar.m_bands.indexOf(next.first()), band);
}

void BandMoves::toFront(CoolBand *band, const Row &row)
{
    detach(band);
    insertBefore(band, row.first());
}

void BandMoves::behind(CoolBand *band, CoolBand *previous, int pixels)
{
    const Row row = rowOf(previous);
    detach(band);
    keepShownWidths(row);
    previous->m_width = Twips::fromPixels(pixels);
    band->m_newRow = false;
    m_bar.m_bands.insert(m_bar.m_bands.indexOf(previous) + 1, band);
}

void BandMoves::placeLeftEdge(CoolBand *band, int left)
{
    const Row row = rowOf(band);
    const auto k = row.indexOf(band);
    if (k <= 0)
        return;
    CoolBand *previous = row.at(k - 1);
    const int least = previous->geometry().left() + previous->minimumPixels();
    const int end = band->geometry().right() + 1;
    const int most = std::max(least, end - band->minimumPixels());
    left = std::clamp(left, least, most);
    if (left == band->geometry().left())
        return;
    keepShownWidths(row);
    previous->m_width = Twips::fromPixels(left - previous->geometry().left());
    if (band != row.last())
        band->m_width = Twips::fromPixels(end - left);
    m_bar.bandsChanged();
}

bool BandMoves::step(CoolBand *band, Direction direction)
{
    bool moved = false;
    switch (direction) {
    case Direction::Left:
        moved = stepAside(band, -1);
        break;
    case Direction::Right:
        moved = stepAside(band, 1);
        break;
    case Direction::Up:
        moved = stepToRow(band, -1);
        break;
    case Direction::Down:
        moved = stepToRow(band, 1);
        break;
    }
    if (moved)
        m_bar.bandsChanged();
    return moved;
}

bool BandMoves::stepAside(CoolBand *band, int by)
{
    const Row row = rowOf(band);
    const auto to = row.indexOf(band) + by;
    if (to < 0 || to >= row.size())
        return false;
    CoolBand *first = by < 0 ? row.at(to) : band;
    CoolBand *second = by < 0 ? band : row.at(to);
    // Else the one that was last would take all the room it once wanted.
    second->m_width = Twips::fromPixels(second->geometry().width());
    exchange(first, second);
    return true;
}

bool BandMoves::stepToRow(CoolBand *band, int by)
{
    const QList<Row> rows = m_bar.rows();
    const Row own = rowOf(band);
    const int at = int(rows.indexOf(own));
    if (own.size() > 1) {
        toOwnRow(band, by < 0 ? at : at + 1);
        return true;
    }
    const int to = at + by;
    if (at < 0 || to < 0 || to >= rows.size())
        return false;
    // The band gets the width it wants, but leaves its neighbour half of the place it has.
    CoolBand *previous = rows.at(to).last();
    const int room = previous->geometry().width();
    const double wanted = std::clamp(band->width() / Twips::perPixel, 0.0, double(room) / 2);
    behind(band, previous, room - std::max(int(wanted), band->minimumPixels()));
    return true;
}
