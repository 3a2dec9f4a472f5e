#pragma once

#include <QList>
#include <QRectF>
#include <QWidget>

/// Marks over a page, of which the page sees nothing: the hits in sight, and where all are along
/// its scroll bar.
class HitOverlay : public QWidget {
    Q_OBJECT

public:
    struct Marks {
        /// In the view, pixels.
        QList<QRectF> hits;
        /// The current one of them; null where it is not in sight.
        QRectF current;
        /// Along the page, from 0 to 1.
        QList<double> along;
        /// Width of the scroll bar at the right edge, pixels; 0: there is none.
        double barWidth = 0;
    };

    explicit HitOverlay(QWidget *view);

    void show(const Marks &marks);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Marks m_marks;
};
