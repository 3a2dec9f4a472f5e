#pragma once

#include "DownloadAsker.h"
#include "PageQuestion.h"
#include "UserAct.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

class WebPage;
struct AskingSite;

/// How many files a page may download before its user is asked: a few each time that he does
/// something with it. Those that come then wait, and for all of a site there is one answer: a frame
/// of another site asks in that site's name.
class PageDownloads : public QObject {
    Q_OBJECT

public:
    enum class Verdict {
        Go,
        /// `answered` follows, for all of that asker.
        Wait,
        Refused
    };

    /// Becomes the page's child.
    explicit PageDownloads(WebPage &page);
    ~PageDownloads() override;

    /// For one more.
    Verdict judge(const DownloadAsker &asker);
    /// The page itself, a site or a frame without one, as one word.
    QString nameOf(const DownloadAsker &asker) const;
    /// For one more of pages that have gone: nobody can be asked, so there is a limit, and none
    /// for whom the user had remembered that it may not. `page` is empty where it is not known; the
    /// site of the file's address stands in for it.
    static Verdict judgeOfGone(const DownloadAsker &asker, const QUrl &page, const QUrl &file);

signals:
    void answered(const QString &asker, bool isWanted);

private:
    void renew();
    /// For whom an answer may be kept.
    AskingSite siteOf(const DownloadAsker &asker) const;
    void ask(const DownloadAsker &asker);
    void finish(const QString &asker, PageQuestion::Answer answer);
    Verdict refuse();
    void tellRefused();

    WebPage &m_page;
    UserAct m_act;
    int m_left;
    /// How many, by who asks.
    QHash<QString, int> m_waiting;
    int m_refused = 0;
    /// By the user, as long as the page is there.
    QSet<QString> m_allowed;
    QTimer m_tells;
};
