#pragma once

#include <QObject>

/// What brings the bytes of one download: the engine, or a request of our own. It changes its entry
/// in the list and deletes itself once that is over.
class Transfer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void pause() = 0;
    virtual void resume() = 0;
    /// Ends it; what came so far goes.
    virtual void cancel() = 0;
    /// The program ends: what can be continued stays on the disk, the rest goes. Returns when that
    /// is so.
    virtual void leave() = 0;
};
