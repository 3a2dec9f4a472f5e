#pragma once

#include <QWidget>

class CoolBand;
class CoolBar;

/// The gripper of a band for the keyboard and for screen readers; what the mouse does there is the
/// bar's own matter, which also draws the dots.
///
/// Left and Right exchange the band with its neighbour. Up and Down take it out of a row it shares
/// into one of its own, and from there to the end of the next row. With Shift, Left and Right move
/// the band's left edge. Space and Enter do what a double click does.
class BandGrip : public QWidget {
    Q_OBJECT

public:
    static constexpr int pixels = 11;

    BandGrip(CoolBar &bar, CoolBand &band);

    /// Takes the band's name and the texts around it from the language file.
    void translate();
    /// Where the band stands, for screen readers.
    QString placeText() const;

    /// What a key does, by the keys' codes of Left, Right, Up, Down and Space.
    void act(int key, bool resize = false);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    CoolBar &m_bar;
    CoolBand &m_band;
};
