#pragma once

#include "Download.h"
#include "Transfer.h"

#include <QString>

#include <memory>

class QWebEngineProfile;
class WebPage;

/// A download that the program itself asks the engine for, until the engine tells of it. It has a
/// page of its own, by which what comes is known; the page stays until then, though nobody wants
/// the download any more, as the engine would take it for somebody else's.
class DownloadOrder : public Transfer {
    Q_OBJECT

public:
    /// For the list's entry of that id.
    DownloadOrder(const QString &id, QWebEngineProfile *profile);
    ~DownloadOrder() override;

    void start();
    QString id() const { return m_id; }
    /// What the engine tells of comes from that page.
    bool isFor(const WebPage *page) const { return page == m_page.get(); }
    /// Nobody wants it any more.
    bool isCancelled() const { return m_isCancelled; }

    void pause() override { }
    void resume() override { }
    void cancel() override;
    void leave() override;

private:
    void end(Download::State state);

    QString m_id;
    std::unique_ptr<WebPage> m_page;
    bool m_isCancelled = false;
};
