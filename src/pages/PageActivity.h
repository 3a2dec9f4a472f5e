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

    void noteConnection();
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
    /// inside the engine, whether it goes without a word; it takes that for its end. A page that
    /// does not answer, or has no time to be asked, stays, and `done` is not called where the page
    /// goes first. Who asks while it is asked shares the answer. Once the page is heard, and before
    /// it is asked, each is asked by `mayStill` whether it is to be, inside the engine.
    void askToGo(const std::function<bool()> &mayStill,
                 const std::function<void(bool mayGo)> &done);
    /// The page has answered, by asking its user or by asking for its window to be closed; false
    /// where that was not what it was asked for here.
    bool takeAnswer(bool mayGo);

private:
    struct Asker {
        std::function<bool()> mayStill;
        std::function<void(bool mayGo)> done;
    };

    void beginAnew();
    void ask();
    void finish(bool mayGo);

    WebPage &m_page;
    QDeadlineTimer m_sending{0};
    QList<QPointer<QObject>> m_work;
    QList<Asker> m_askers;
    QTimer m_patience;
    /// An answer is still to come.
    bool m_isOwed = false;
    bool m_hasConnection = false;
    /// The page's navigations that were the last when it connected and when it sent.
    int m_connectedAfter = 0;
    int m_sentAfter = 0;
};
