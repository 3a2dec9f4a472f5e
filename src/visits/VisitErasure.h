#pragma once

#include "VisitLine.h"

#include <QSet>
#include <limits>

/// Which visits are to be deleted.
class VisitErasure {
public:
    /// Of pages, by their addresses.
    static VisitErasure ofPages(const QSet<QByteArray> &addresses);
    /// Of all pages of a host, as `hostOf` gives it.
    static VisitErasure ofSite(const QByteArray &host);
    /// From one moment until before another; seconds since the beginning of 1970, UTC.
    static VisitErasure between(qint64 from, qint64 end);
    static VisitErasure before(qint64 end)
    {
        return between(std::numeric_limits<qint64>::min(), end);
    }
    /// And whatever else is in the file.
    static VisitErasure ofAll() { return {}; }

    bool isOfAll() const { return m_kind == Kind::All; }
    bool covers(const VisitLine::Parts &visit) const;

    /// In lower case; empty for a file of this computer.
    static QByteArray hostOf(QByteArrayView address);

private:
    enum class Kind { Pages, Site, Time, All };

    VisitErasure() = default;

    Kind m_kind = Kind::All;
    QSet<QByteArray> m_addresses;
    QByteArray m_host;
    qint64 m_from = 0;
    qint64 m_end = 0;
};
