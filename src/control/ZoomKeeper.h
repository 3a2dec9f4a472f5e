#pragma once

#include "WriteResult.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

/// Keeps what the user chose for sites (`SiteZoom`) a moment later, once for many turns of the
/// wheel, and tells all windows at once.
class ZoomKeeper : public QObject {
    Q_OBJECT

public:
    static ZoomKeeper &instance();

    int percent(const QString &site) const;
    void put(const QString &site, int percent);
    /// Shows those as usual again, from now on and where they are open. What can no longer be read
    /// goes with all of them.
    WriteResult forget(const QStringList &sites);
    WriteResult forgetAll();
    /// Writes what waits to be written.
    void flush();

signals:
    void changed(const QString &site, int percent);

private:
    ZoomKeeper();
    void takeBack(const QStringList &sites);

    /// What the file does not say: not yet, or as it could not be written.
    QHash<QString, int> m_unwritten;
    QStringList m_due;
    QTimer m_timer;
};
