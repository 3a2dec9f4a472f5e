#pragma once

#include <QList>
#include <QWidget>
#include <memory>

class CoolBand;
class CoolBarDrag;

/// A strip of movable, resizable bands in rows, docked at the top or the bottom of its window.
///
/// Grippers drag a band within its row (which sets widths and, past a neighbour's gripper, changes
/// the order), to another row or into a row of its own; Escape gives a drag up. A double click on a
/// gripper makes the band as wide as its row allows, or as narrow if it is that already. The
/// grippers take the keyboard too (see BandGrip), and the Tab order is the one shown. A band too
/// narrow for a child that implements Overflow shows a chevron. The bar's height is what its rows
/// need and does not depend on its width.
class CoolBar : public QWidget {
    Q_OBJECT

public:
    enum class Dock { Top = 1, Bottom = 2 };

    explicit CoolBar(QWidget *parent = nullptr);
    ~CoolBar() override;

    /// Appends a band; the bar becomes the child's parent. Keys are unique.
    CoolBand *addBand(const QString &key, QWidget *child, const QString &caption,
                      double designWidthTwips, bool newRow);

    int bandCount() const { return int(m_bands.size()); }
    /// By position from 1, in the current visual order, hidden bands included; null outside.
    CoolBand *band(int position) const;
    /// By key, exactly as given to addBand; null when there is none.
    CoolBand *band(const QString &key) const;

    Dock dock() const { return m_dock; }
    /// The owner moves the bar; the bar draws the line towards the pages on the right edge.
    void setDock(Dock dock);

    /// Takes the texts of the bar itself (names of bands, grippers, chevrons) from the language
    /// file.
    void translate();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The bands have new places: after any change of size, order, width or visibility.
    void laidOut();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    friend class BandGrip;
    friend class BandMoves;
    friend class CoolBand;
    friend class CoolBarDrag;
    using Row = QList<CoolBand *>;

    QList<Row> rows() const;
    CoolBand *bandWithHandleAt(QPoint pos) const;
    void bandsChanged();
    void layOut();
    void followOrder();
    void layOutRow(const Row &row, int top, int height);
    void toggleMaximized(CoolBand *band);
    static void maximize(CoolBand *band, const Row &row, int pixels);
    static void minimize(CoolBand *band, const Row &row);

    QList<CoolBand *> m_bands;
    QList<CoolBand *> m_tabOrder; // the bands as the Tab key goes through them
    std::unique_ptr<CoolBarDrag> m_drag;
    QString m_chevronName;
    Dock m_dock = Dock::Top;
};
