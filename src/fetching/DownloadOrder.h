#pragma once

#include "Download.h"
#include "Transfer.h"

#include <QPointer>
#include <QString>

#include <memory>
#include <optional>

class OrderRequests;
class QWebEngineDownloadRequest;
class QWebEngineProfile;
class QWidget;
class WebPage;

/// A download that the program itself asks the engine for, until the engine tells of it. It has a
/// page of its own, and a mark in its address that no server sees and no page can guess, by which
/// what comes is known. The page stays until then, though nobody wants the download any more, as
/// the engine would take it for somebody else's.
class DownloadOrder : public Transfer {
    Q_OBJECT

public:
    /// For the list's entry of that id.
    DownloadOrder(const QString &id, QWebEngineProfile *profile);
    ~DownloadOrder() override;

    /// The name that the entry has by now stays, or, where the user says the place, is proposed.
    void start();
    /// The server gets to know, as far as engines tell it, the page that the file is asked for
    /// from; once it is known that it comes, the user says where it goes, over `owner`.
    void startFor(const QUrl &page, QWidget *owner);
    QString id() const { return m_id; }
    /// What the engine tells of is this.
    bool isFor(const QWebEngineDownloadRequest &request) const;
    /// Where the engine brings it from, to which a server may have sent it on.
    QUrl address(const QWebEngineDownloadRequest &request) const;
    /// Nobody wants it any more.
    bool isCancelled() const { return m_isCancelled; }
    bool asksForPlace() const { return m_asksForPlace; }
    QWidget *owner() const { return m_owner; }

    void pause() override { }
    void resume() override { }
    void cancel() override;
    void leave() override;

private:
    void ask(const QString &name, const QUrl &referrer);
    void end(Download::State state);

    QString m_id;
    QString m_mark;
    QWebEngineProfile *m_profile;
    /// From when the engine is asked.
    std::unique_ptr<WebPage> m_page;
    /// The page's.
    OrderRequests *m_requests = nullptr;
    QPointer<QWidget> m_owner;
    bool m_asksForPlace = false;
    bool m_isCancelled = false;
};
