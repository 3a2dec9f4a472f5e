#pragma once

#include <QByteArray>
#include <QString>

/// A page that was shown at some time.
struct Visit {
    /// Seconds since the beginning of 1970, UTC.
    qint64 time = 0;
    QString address;
    QString title;
};
