#pragma once

#include <QList>
#include <QStringList>

class QAction;
class QObject;

/// What the child of a band may offer so that the band's chevron can show what does not fit.
/// A child that does not implement it gets no chevron; it is cut off instead.
class Overflow {
public:
    virtual ~Overflow() = default;

    /// Pixels the child needs to show everything.
    virtual int fullWidth() const = 0;
    /// The names of everything that does not fit now, in order.
    virtual QStringList overflowNames() = 0;
    /// Actions for `count` of these from `first` on, or for all that follow when it is negative,
    /// owned by `parent`; they do what a click on the hidden part would do.
    virtual QList<QAction *> overflowActions(QObject *parent, qsizetype first = 0,
                                             qsizetype count = -1) = 0;
};
