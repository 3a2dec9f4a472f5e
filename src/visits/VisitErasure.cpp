#include "VisitErasure.h"

#include <QUrl>

VisitErasure VisitErasure::ofPages(const QSet<QByteArray> &addresses)
{
    VisitErasure erasure;
    erasure.m_kind = Kind::Pages;
    erasure.m_addresses = addresses;
    return erasure;
}

VisitErasure VisitErasure::ofSite(const QByteArray &host)
{
    VisitErasure erasure;
    erasure.m_kind = Kind::Site;
    erasure.m_host = host;
    return erasure;
}

VisitErasure VisitErasure::between(qint64 from, qint64 end)
{
    VisitErasure erasure;
    erasure.m_kind = Kind::Time;
    erasure.m_from = from;
    erasure.m_end = end;
    return erasure;
}

bool VisitErasure::covers(const VisitLine::Parts &visit) const
{
    switch (m_kind) {
    case Kind::Pages:
        return m_addresses.contains(
            QByteArray::fromRawData(visit.address.data(), visit.address.size()));
    case Kind::Site:
        return hostOf(visit.address) == m_host;
    case Kind::Time:
        return visit.time >= m_from && visit.time < m_end;
    case Kind::All:
        break;
    }
    return true;
}

QByteArray VisitErasure::hostOf(QByteArrayView address)
{
    return QUrl::fromEncoded(address.toByteArray()).host(QUrl::FullyEncoded).toLower().toLatin1();
}
