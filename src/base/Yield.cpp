#include "Yield.h"

#include <QCoreApplication>

namespace {
int openScopes = 0;
}

void letPendingEventsRun()
{
    if (openScopes == 0)
        QCoreApplication::processEvents();
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
