#pragma once

#include <QList>

class CoolBand;
class CoolBar;

/// The places a band of a cool bar can be moved to, for the mouse and for the keyboard. Bands in
/// the same row keep the widths they are shown with. Only functions that say so lay the bar out;
/// after the others the caller does.
class BandMoves {
public:
    using Row = QList<CoolBand *>;
    enum class Direction { Left, Right, Up, Down };

    explicit BandMoves(CoolBar &bar)
        : m_bar(bar)
    {
    }

    /// The row of a shown band, from left to right; empty for a hidden one.
    Row rowOf(CoolBand *band) const;

    /// `first` and `second`, its neighbour at the right, change places.
    void exchange(CoolBand *first, CoolBand *second);
    /// Gives `band` a row of its own before the visible row of that number, or after the last.
    void toOwnRow(CoolBand *band, int beforeRow);
    /// Makes `band` the first of `row`, which it is not in.
    void toFront(CoolBand *band, const Row &row);
    /// Puts `band` behind `previous`, a band of another row, which is to be `pixels` wide.
    void behind(CoolBand *band, CoolBand *previous, int pixels);
    /// Moves the left edge of `band` to `left` pixels of the bar, as far as its neighbours' least
    /// widths allow, and lays out. The first band of a row stays where it is.
    void placeLeftEdge(CoolBand *band, int left);

    /// One step: past the neighbour in the row; up or down out of a shared row into one of its own,
    /// and from there to the end of the next. Lays out; false where there is nowhere to go.
    bool step(CoolBand *band, Direction direction);

private:
    static void keepShownWidths(const Row &row);
    void detach(CoolBand *band);
    void insertBefore(CoolBand *band, CoolBand *other);
    bool stepAside(CoolBand *band, int by);
    bool stepToRow(CoolBand *band, int by);

    CoolBar &m_bar;
};
