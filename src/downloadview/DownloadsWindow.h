#pragma once

#include "ListWindow.h"

#include <QTimer>

class DownloadActions;
class DownloadList;
class DownloadModel;
class DownloadView;
class QSortFilterProxyModel;
struct Download;

/// The inner window with the list of downloads and what can be done with them. There is one at
/// most; its tab is like a page's.
class DownloadsWindow : public ListWindow {
    Q_OBJECT

public:
    /// The one that is open in `frame`, or a new one.
    static DownloadsWindow *openIn(Frame &frame, DownloadList &list);

    void focusContents() override;
    void translate() override;

    // What the Edit menu does here.
    void copyAddresses();
    void selectAll();
    void selectNone();

private:
    DownloadsWindow(Frame &frame, DownloadList &list);

    void makeContents();
    void connectList();
    void arrangeColumns();
    /// None is narrower than its heading.
    void widenColumns();
    /// As they are now, of which the rows may be told a moment later.
    QList<Download> chosen() const;

    DownloadList &m_list;
    DownloadModel *m_model;
    QSortFilterProxyModel *m_sorted;
    DownloadView *m_view;
    DownloadActions *m_actions;
    /// Many changes come together.
    QTimer m_refreshes;
};
