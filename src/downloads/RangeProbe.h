#pragma once

#include "RangeFetch.h"

#include <QObject>
#include <QSet>
#include <QTimer>

#include <memory>

class DownloadList;
class WebThread;

/// Asks the servers of downloads that take a while by what they tell their files from later ones,
/// which the engine does not say: without it nobody can go on with one in the next run of the
/// program. Each is asked once, for a single byte.
class RangeProbe : public QObject {
    Q_OBJECT

public:
    /// Follows the list.
    RangeProbe(DownloadList &list, const MannersNow &manners, QObject *parent = nullptr);
    ~RangeProbe() override;

private:
    void wake();
    void look();
    void ask(const Download &download);
    void take(const QString &id, const RangeAnswer &answer);

    DownloadList &m_list;
    MannersNow m_manners;
    QTimer m_looks;
    /// By their ids.
    QSet<QString> m_asked;
    /// Those that have not been answered, in their thread.
    QSet<RangeFetch *> m_fetches;
    std::shared_ptr<WebThread> m_web;
};
