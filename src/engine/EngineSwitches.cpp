#include "EngineSwitches.h"

#include <QtGlobal>

namespace {
constexpr char variable[] = "QTWEBENGINE_CHROMIUM_FLAGS";

// Every local page is an origin of its own: it shows the pictures, styles, scripts and frames that
// lie beside it, and reads nothing of them. The engine's setting that is meant for this keeps even
// a page's own parts from being shown.
constexpr char switches[] = "--blink-settings=allowFileAccessFromFileURLs=false";
}

EngineSwitches::EngineSwitches()
    : m_wasSet(qEnvironmentVariableIsSet(variable))
    , m_before(qgetenv(variable))
{
    qputenv(variable, m_wasSet ? m_before + ' ' + switches : QByteArray(switches));
}

EngineSwitches::~EngineSwitches()
{
    if (m_wasSet)
        qputenv(variable, m_before);
    else
        qunsetenv(variable);
}
