#pragma once

#include <QElapsedTimer>

/// Lets pending events run once, so that the interface stays live in a long routine. Inside an
/// engine callback this returns at once: a nested event loop there stops every page (the callback
/// is done soon, and the interface lives on then).
void letPendingEventsRun();
/// What runs now runs in between: a routine goes on when it returns.
bool arePendingEventsRunning();

/// For long loops over the user's data: lets pending events run by time, whatever the number of
/// the steps, so that the loop costs what its steps cost.
class SlicedLoop {
public:
    SlicedLoop() { m_slice.start(); }
    /// After each step. True when pending events have run: what the loop works on may have gone.
    bool yieldWhenDue();

private:
    QElapsedTimer m_slice;
};

/// Marks the current scope as running inside an engine callback.
class EngineCallbackScope {
public:
    EngineCallbackScope();
    ~EngineCallbackScope();
    EngineCallbackScope(const EngineCallbackScope &) = delete;
    EngineCallbackScope &operator=(const EngineCallbackScope &) = delete;
    /// True while any such scope is open.
    static bool active();
};
