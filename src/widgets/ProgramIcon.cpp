#include "ProgramIcon.h"

#include <QIcon>

using namespace Qt::StringLiterals;

// A static library's resources are linked and registered only when they are named.
static void registerResources()
{
    Q_INIT_RESOURCE(widgets);
}

QIcon programIcon()
{
    registerResources();
    return QIcon(u":/orvane/program-icon.svg"_s);
}
