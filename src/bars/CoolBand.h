#pragma once

#include <QList>
#include <QObject>
#include <QRect>
#include <QString>

class BandGrip;
class CoolBar;
class QLabel;
class QWidget;
class ChevronButton;

/// One band of the cool bar: a gripper, a caption (may be empty) and a child control. The bar owns
/// its bands, and a band's child as widget.
class CoolBand : public QObject {
    Q_OBJECT

public:
    QString key() const { return m_key; }
    QWidget *child() const { return m_child; }

    /// What the band is called for those who do not see it, in the user's language; the key until
    /// a name is given. A child that no caption labels takes it too.
    QString name() const { return m_name; }
    void setName(const QString &name);

    QString caption() const;
    /// The caption is drawn before the child and labels it for screen readers.
    void setCaption(const QString &caption);

    /// As set, whether or not the bar itself is shown.
    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);

    /// Whether the band starts a row; of no effect on the bar's first visible band.
    bool newRow() const { return m_newRow; }
    void setNewRow(bool newRow);

    /// The wanted width in twips, as set or dragged: what is shown may differ, because widths are
    /// fitted to the bar only when it is laid out and a row's last band takes what is left.
    double width() const { return m_width; }
    /// Any finite number is kept as it is; others are ignored.
    void setWidth(double twips);

    /// Where the band is shown, in pixels of the bar; null while it is hidden.
    QRect geometry() const { return m_geometry; }
    /// The part of `geometry` a user drags: gripper and caption.
    QRect handle() const;
    /// The part of `geometry` the child has; the chevron, while there is one, is outside of it.
    QRect childArea() const;
    /// Whether the chevron shows because the child does not fit.
    bool hasChevron() const;

private:
    friend class BandMoves;
    friend class CoolBar;
    friend class CoolBarDrag;

    CoolBand(CoolBar *bar, const QString &key, QWidget *child, double width, bool newRow);
    /// What the Tab key may stop at, and what is to keep its place among that, in order.
    QList<QWidget *> tabStops() const;
    int minimumPixels() const;
    int heightPixels() const;
    void place(const QRect &geometry);
    void placeChild(bool chevron);

    CoolBar *m_bar;
    QString m_key;
    QWidget *m_child;
    QString m_name;
    BandGrip *m_grip;
    QLabel *m_label;
    ChevronButton *m_chevron = nullptr;
    double m_width;
    bool m_newRow;
    bool m_visible = true;
    QRect m_geometry;
};
