#pragma once

#include <QPointer>
#include <QWebEngineDownloadRequest>
#include <memory>

#include "PageHold.h"

class SaveStage;
class QProgressDialog;
class QWidget;
class WebPage;

/// One saving of a page by the engine, with its progress. What is there already is replaced only
/// by what is whole. The job deletes itself at the end, and keeps its
/// page until then, though its window closes.
class SaveJob : public QObject {
    Q_OBJECT

public:
    SaveJob(WebPage *page, const QString &file, QWebEngineDownloadRequest::SavePageFormat format,
            QWidget *owner);
    ~SaveJob() override;

    void start();
    /// Gives a request that the engine tells of for the first time to the job of its page that
    /// asked for it; false when there is none.
    static bool take(QWebEngineDownloadRequest &request, int privateSession);

signals:
    void saved();
    void failed();

private:
    bool isFor(const QWebEngineDownloadRequest &request, int privateSession) const;
    void begin(QWebEngineDownloadRequest &request);
    void watch();
    void showProgress();
    void closeProgress();
    void giveUp();
    void keep();
    void end(bool done);
    void tell(bool done);

    WebPage *m_page;
    QPointer<QWidget> m_owner;
    QPointer<QWebEngineDownloadRequest> m_request;
    QPointer<QProgressDialog> m_progress;
    /// While something may come of it.
    std::unique_ptr<PageHold> m_hold;
    /// Putting the files in place outlasts the job.
    std::shared_ptr<SaveStage> m_stage;
    QWebEngineDownloadRequest::SavePageFormat m_format;
    bool m_cancelled = false;
    /// All is written, and on its way into its place.
    bool m_keeps = false;
    /// Nothing comes of it any more.
    bool m_over = false;
};
