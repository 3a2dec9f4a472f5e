#pragma once

#include <QList>

class QAction;
class QObject;

/// What the child of a band may offer so that the band's chevron can show what does not fit.
/// A child that does not implement it gets no chevron; it is cut off instead.
class Overflow {
public:
    virtual ~Overflow() = default;

    /// Pixels the child needs to show everything.
    virtual int fullWidth() const = 0;
    /// One action for everything that does not fit now, owned by `parent`; they do what a click
    /// on the hidden part would do.
    virtual QList<QAction *> overflowActions(QObject *parent) = 0;
};
