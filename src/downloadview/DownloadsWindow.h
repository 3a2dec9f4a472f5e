#pragma once

#include "InnerWindow.h"

#include <QTimer>

class DownloadActions;
class DownloadList;
class DownloadModel;
class DownloadView;
class QSortFilterProxyModel;
struct Download;

/// The inner window with the list of downloads and what can be done with them. There is one at
/// most; its tab is like a page's.
class DownloadsWindow : public InnerWindow {
    Q_OBJECT

public:
    /// The one that is open in `frame`, or a new one.
    static DownloadsWindow *openIn(Frame &frame, DownloadList &list);

    /// No page's.
    QString shownAddress() const override { return {}; }
    void focusContents() override;
    void translate() override;

    // What the Edit menu does here.
    void copyAddresses();
    void selectAll();
    void selectNone();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    DownloadsWindow(Frame &frame, DownloadList &list);
    ~DownloadsWindow() override;

    void makeContents();
    void connectList();
    void arrangeColumns();
    /// None is narrower than its heading.
    void widenColumns();
    /// As they are now, of which the rows may be told a moment later.
    QList<Download> chosen() const;
    void unload();

    DownloadList &m_list;
    DownloadModel *m_model;
    QSortFilterProxyModel *m_sorted;
    DownloadView *m_view;
    DownloadActions *m_actions;
    /// Many changes come together.
    QTimer m_refreshes;
    bool m_unloaded = false;
};
