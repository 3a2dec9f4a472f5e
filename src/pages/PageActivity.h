#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>

class WebPage;

/// What a page does that would end with it, as far as the engine tells without the page being
/// touched. It tells of a request when that begins and not of its end, and nothing tells a stream
/// of events from any other request of a script.
class PageActivity : public QObject {
    Q_OBJECT

public:
    /// Becomes the page's child.
    explicit PageActivity(WebPage &page);

    void noteConnection() { m_hasConnection = true; }
    /// A connection for news was opened since the page came; it may have ended.
    bool hasConnection() const { return m_hasConnection; }
    /// A script of the page sends something to a server.
    void noteSending();
    /// It may still be on its way.
    bool maySend() const { return !m_sending.hasExpired(); }
    /// Goes on until `work` is deleted.
    void noteWork(QObject *work);
    bool isWorking() const;

    /// Asks the page as if its window were to be closed, unseen by the user; `done` is told, not
    /// inside the engine, whether it goes without a word. A page that does not answer stays, and
    /// `done` is not called where the page goes first.
    void askToGo(const std::function<void(bool mayGo)> &done);
    /// The page has answered, by asking its user or by asking for its window to be closed; false
    /// where that was not what it was asked for here.
    bool takeAnswer(bool mayGo);

private:
    void finish(bool mayGo);

    WebPage &m_page;
    QDeadlineTimer m_sending{0};
    QList<QPointer<QObject>> m_work;
    std::function<void(bool)> m_done;
    QTimer m_patience;
    /// Answers that are still to come.
    int m_owed = 0;
    bool m_hasConnection = false;
};
