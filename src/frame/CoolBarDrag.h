#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

class CoolBand;
class CoolBar;
class QPainter;

/// One drag of a band by its handle. Inside the band's row it takes effect at once; elsewhere a
/// mark shows where the band would go, and it goes there when it is dropped.
class CoolBarDrag {
public:
    explicit CoolBarDrag(CoolBar *bar)
        : m_bar(bar)
    {
    }

    bool isActive() const { return m_band != nullptr; }
    void start(CoolBand *band, QPoint pos);
    void move(QPoint pos);
    void drop(QPoint pos);
    /// Puts everything back to where it was at the start.
    void cancel();
    void paint(QPainter &painter) const;

private:
    CoolBar *m_bar;
    CoolBand *m_band = nullptr;
};
