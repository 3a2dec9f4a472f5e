// Colouring source: bench_colouring [SERIES...]. Exit status 1 when a figure is over its limit.

#include "Documents.h"
#include "Growth.h"
#include "Holds.h"
#include "Keystrokes.h"
#include "Peer.h"
#include "Report.h"
#include "Screen.h"

#include <QApplication>
#include <QTemporaryDir>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

namespace {

bool isWanted(const QString &series)
{
    const QStringList wanted = QCoreApplication::arguments().mid(1);
    return wanted.isEmpty() || wanted.contains(series);
}

}

int main(int argc, char **argv)
{
#ifdef __GLIBC__
    // Memory of every size comes fresh from the system, or small texts would be flattered.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
    QApplication application(argc, argv);
    Report report;
    const QTemporaryDir dir;
    const Peer peer;
    const bool compares = isWanted(u"documents"_s) || isWanted(u"screen"_s);
    if (compares && !peer.isThere())
        report.missing(u"The program \"highlight\", with which to compare. On Debian, "
                       "\"apt-get install highlight\" brings it."_s);
    if (isWanted(u"documents"_s) && peer.isThere())
        Documents::measure(report, peer, dir);
    if (isWanted(u"screen"_s) && peer.isThere())
        Screen::measure(report, peer, dir);
    if (isWanted(u"keystrokes"_s))
        Keystrokes::measure(report);
    if (isWanted(u"holds"_s))
        Holds::measure(report);
    if (isWanted(u"growth"_s))
        Growth::measure(report);
    return report.failed() ? 1 : 0;
}
