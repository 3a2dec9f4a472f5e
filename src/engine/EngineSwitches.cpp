#include "EngineSwitches.h"

#include <QtGlobal>

namespace {
constexpr char variable[] = "QTWEBENGINE_CHROMIUM_FLAGS";

// Every local page is an origin of its own: it shows the pictures, styles, scripts and frames that
// lie beside it, and reads nothing of them. The engine's setting that is meant for this keeps even
// a page's own parts from being shown.
constexpr char switches[] = "--blink-settings=allowFileAccessFromFileURLs=false";

// In pieces that come side by side a download has gaps, and nothing of it could be continued.
constexpr char disabling[] = "--disable-features=";
constexpr char disabled[] = "ParallelDownloading";

/// Of a switch that is given twice the engine takes the last.
QByteArray withOurs(QByteArray flags, const char *colours)
{
    const qsizetype theirs = flags.lastIndexOf(disabling);
    if (theirs < 0)
        flags += ' ' + QByteArray(disabling) + disabled;
    else
        flags.insert(theirs + qsizetype(sizeof disabling) - 1, QByteArray(disabled) + ',');
    return (flags + ' ' + switches + colours).trimmed();
}

/// Behind the other settings of pages.
const char *coloursOf(EngineSwitches::Pages pages)
{
    switch (pages) {
    case EngineSwitches::Pages::Dark:
        return ",preferredColorScheme=0";
    case EngineSwitches::Pages::Light:
        return ",preferredColorScheme=1";
    default:
        return "";
    }
}
}

EngineSwitches::EngineSwitches(Pages pages)
    : m_wasSet(qEnvironmentVariableIsSet(variable))
    , m_before(qgetenv(variable))
{
    qputenv(variable, withOurs(m_before, coloursOf(pages)));
}

EngineSwitches::~EngineSwitches()
{
    if (m_wasSet)
        qputenv(variable, m_before);
    else
        qunsetenv(variable);
}
