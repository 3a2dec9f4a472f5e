#pragma once

#include <QString>

/// Prints figures against their limits and remembers whether any is over.
class Report {
public:
    void atMost(const QString &what, double value, double limit, const QString &unit);
    void atLeast(const QString &what, double value, double limit, const QString &unit);
    void note(const QString &text);
    /// Something that could not be measured without counts as over its limit.
    void missing(const QString &what);
    bool failed() const { return m_failed; }

private:
    void print(const QString &what, double value, const QString &bound, double limit,
               const QString &unit, bool ok);

    bool m_failed = false;
};
