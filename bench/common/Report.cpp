#include "Report.h"

#include <QTextStream>

using namespace Qt::StringLiterals;

void Report::atMost(const QString &what, double value, double limit, const QString &unit)
{
    print(what, value, u"at most"_s, limit, unit, value <= limit);
}

void Report::atLeast(const QString &what, double value, double limit, const QString &unit)
{
    print(what, value, u"at least"_s, limit, unit, value >= limit);
}

void Report::note(const QString &text)
{
    QTextStream(stdout) << text << Qt::endl;
}

void Report::missing(const QString &what)
{
    m_failed = true;
    note(u"MISSING  "_s + what);
}

void Report::print(const QString &what, double value, const QString &bound, double limit,
                   const QString &unit, bool ok)
{
    m_failed = m_failed || !ok;
    QTextStream(stdout) << (ok ? "ok    " : "OVER  ") << what << ": "
                        << QString::number(value, 'f', 2) << ' ' << unit << " (" << bound << ' '
                        << limit << ')' << Qt::endl;
}
