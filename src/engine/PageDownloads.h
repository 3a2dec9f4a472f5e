#pragma once

#include "PageQuestion.h"
#include "UserAct.h"

#include <QObject>
#include <QTimer>

class WebPage;

/// How many files a page may download before its user is asked: a few each time that he does
/// something with it. Those that come then wait for one answer for all.
class PageDownloads : public QObject {
    Q_OBJECT

public:
    enum class Verdict {
        Go,
        /// `answered` follows.
        Wait,
        Refused
    };

    /// Becomes the page's child.
    explicit PageDownloads(WebPage &page);
    ~PageDownloads() override;

    /// For one more.
    Verdict judge();
    /// For one more of pages that have gone: nobody can be asked, so there is a limit.
    static Verdict judgeOfGone();

signals:
    void answered(bool isWanted);

private:
    void renew();
    void ask();
    void finish(PageQuestion::Answer answer);
    Verdict refuse();
    void tellRefused();

    WebPage &m_page;
    UserAct m_act;
    int m_left;
    int m_waiting = 0;
    int m_refused = 0;
    /// By the user, as long as the page is there.
    bool m_isAllowed = false;
    QTimer m_tells;
};
