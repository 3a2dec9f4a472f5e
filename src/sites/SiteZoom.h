#pragma once

#include "WriteResult.h"

#include <QList>
#include <QString>

class QUrl;

/// How large the user wants the pages of a site, in AppData/Zoom.ini: in the section "Sites" a key
/// for each, with the percentage as its value. The file is read at every call. What it says in any
/// other way counts as nothing said and is left alone.
namespace SiteZoom {
/// Percent.
inline constexpr int least = 25;
inline constexpr int most = 500;
inline constexpr int usual = 100;
/// Sites that the file keeps; then the one that came first makes room.
inline constexpr int mostSites = 1000;

/// What is kept for one.
struct Kept {
    QString site;
    int percent = usual;

    bool operator==(const Kept &) const = default;
};

QString path();
/// What the file calls the site of a page: its host as the network writes it, or "file:" for all
/// files of this machine. Empty: it has none that anything is kept for.
QString siteOf(const QUrl &url);
int percent(const QString &site);
/// In one replacement of the file; of a site at the usual size nothing is kept.
WriteResult keep(const QString &site, int percent);

/// In the order of the file, each as it counts.
QList<Kept> all();
/// In one replacement of the file.
WriteResult forget(const QStringList &sites);
/// What counts as nothing said, too.
WriteResult forgetAll();
}
