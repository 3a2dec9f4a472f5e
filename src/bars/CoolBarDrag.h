#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

class CoolBand;
class CoolBar;
class QWidget;

/// One drag of a band by its handle. Inside the band's row it takes effect at once; elsewhere a
/// mark shows where the band would go, and it goes there when it is dropped.
class CoolBarDrag {
public:
    explicit CoolBarDrag(CoolBar *bar);

    bool isActive() const { return m_band != nullptr; }
    void start(CoolBand *band, QPoint pos);
    void move(QPoint pos);
    void drop(QPoint pos);
    /// Puts everything back to where it was at the start.
    void cancel();

private:
    using Row = QList<CoolBand *>;
    struct Before {
        CoolBand *band;
        double width;
        bool newRow;
    };
    /// `row` as an index into the visible rows; `at` counts bands of the row, -1 asks for a new
    /// row before it. Without a row the band stays where it is.
    struct Target {
        int row = -1;
        int at = -1;
        int left = 0;
    };

    void begin();
    void end();
    bool isInOwnRow(int y) const;
    Target targetAt(QPoint pos) const;
    int newRowAt(int y) const;
    Target placeInRow(int row, int x) const;
    QRect markFor(const Target &target) const;
    void showMark(const QRect &place);

    void slide(int x);
    bool swapTowards(int x);
    void apply(const Target &target);
    Row ownRow() const;

    CoolBar *m_bar;
    CoolBand *m_band = nullptr;
    QPoint m_press;
    int m_grab = 0; // from the band's left edge to where it was taken
    bool m_moved = false;
    QWidget *m_mark; // above the children, which may be opaque
    QList<Before> m_before;
};
