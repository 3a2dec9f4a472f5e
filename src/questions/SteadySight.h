#pragma once

#include <QObject>
#include <QRect>
#include <QRegion>
#include <QTimer>
#include <functional>

class QWidget;

/// Tells when a widget has been seen for so long that a click on it is meant for it: in one place,
/// whole where it matters, and covered by nothing of this program, for half a second without a
/// break. Whatever moves it, comes over it or goes from over it begins the half second anew; where
/// the desktop's double click takes longer, that is the time.
class SteadySight : public QObject {
    Q_OBJECT

public:
    /// What of the widget has to be in sight, in its own coordinates.
    using Vital = std::function<QRegion()>;

    /// Becomes the widget's child.
    SteadySight(QWidget *watched, const Vital &vital);

    /// Looks once more.
    bool isOver();
    /// The user shows that he has not seen it yet.
    void beginAnew() { begin(); }

signals:
    void changed(bool isOver);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void look();
    void begin();
    void end();
    bool concerns(QObject *object, const QEvent &event) const;
    bool isInSight() const;
    bool isCoveredInside() const;
    bool isCoveredByWindow() const;
    QRect place() const;

    QWidget *m_watched;
    Vital m_vital;
    QTimer m_clock;
    QRect m_place;
    bool m_inSight = false;
    bool m_isOver = false;
};
