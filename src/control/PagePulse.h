#pragma once

#include <QObject>
#include <QTimer>

class WebPage;

/// Asks a page in sight now and then for a sign of life, which its process gives unless a script
/// keeps it. Time in which the interface itself, or the engine as a whole, stands still is nothing
/// that the page is to blame for. Nor need those answer whose process prints, or is in the
/// debugger.
class PagePulse : public QObject {
    Q_OBJECT

public:
    /// Goes with `bond`, which goes before or with the page.
    PagePulse(WebPage &page, QObject *bond);
    ~PagePulse() override;

    WebPage &page() const { return m_page; }
    bool isSilent() const { return m_isSilent; }
    /// The page is about to be used: asks now, where it was not just asked.
    void look();
    /// A page of the same process does not answer. It is waited for, in sight or not.
    void noteSilent();
    /// Another process, or another page, is there from now on.
    void beginAnew();

signals:
    /// There was no answer for five seconds.
    void fellSilent();
    /// There is one, at whatever time.
    void answered();

private:
    void ask();
    void tick();
    void noteAnswer(int number);
    bool mustAnswer() const;

    WebPage &m_page;
    QTimer m_ticks;
    /// Of the last question to the page, and of the last that no longer counts.
    int m_question = 0;
    int m_void = 0;
    /// Seconds, since the first question that is open.
    int m_waited = 0;
    bool m_isOpen = false;
    bool m_isSilent = false;
};
