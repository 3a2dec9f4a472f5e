#include "Yield.h"

#include <QCoreApplication>

namespace {
int openScopes = 0;
int running = 0;
}

void letPendingEventsRun()
{
    if (openScopes > 0)
        return;
    ++running;
    QCoreApplication::processEvents();
    --running;
}

bool arePendingEventsRunning()
{
    return running > 0;
}

bool SlicedLoop::yieldWhenDue()
{
    constexpr int sliceMs = 25;
    if (!m_slice.hasExpired(sliceMs))
        return false;
    letPendingEventsRun();
    m_slice.start();
    return true;
}

EngineCallbackScope::EngineCallbackScope()
{
    ++openScopes;
}

EngineCallbackScope::~EngineCallbackScope()
{
    --openScopes;
}

bool EngineCallbackScope::active()
{
    return openScopes > 0;
}
